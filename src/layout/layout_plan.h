#pragma once

#include <vector>

// Fitting a dialog's controls to their translated texts, on plain rectangles so that the rules
// can be checked without windows.

struct LayoutRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  int width() const { return right - left; }
  int height() const { return bottom - top; }
  bool operator==(const LayoutRect&) const = default;
};

enum class LayoutKind {
  kFixed,     // nothing to fit (edit fields, lists, icons)
  kOneLine,   // buttons, radio buttons, check boxes, links and headings: widen to the text
  kWrapping,  // multi-line labels: grow downwards to the text's wrapped height
  kRule,      // an etched line beside a heading: gives way when the heading widens
};

struct LayoutControl {
  LayoutKind kind = LayoutKind::kFixed;
  LayoutRect rect;
  // kOneLine: width of the text plus the control's own decoration; kWrapping: the width of its
  // longest word when that is wider than the control, else 0.
  int neededWidth = 0;
  // kWrapping: height of the text wrapped at the control's width. kOneLine: the height of the
  // text on one line, or wrapped at the widest width the control may have when even that is
  // too narrow for one line; 0 for controls that keep their height.
  int neededHeight = 0;
  // Right-aligned labels of one column (same left and right edge) make room for the widest of
  // them, so that the values beside them stay aligned; each ends up as wide as its own text.
  bool rightAligned = false;
  // Part of the block at the bottom of a page: it stays where it is while the controls above
  // still leave room, and moves down as a whole when they do not.
  bool bottomBlock = false;
};

// A size the design gives in pixels is a size at 96 dots per inch (100 %); on a screen with more
// dots per inch it grows in proportion, rounded to the nearest pixel as MulDiv rounds.
int ScaleFrom96(int pixels, int dotsPerInch);

// Room kept free at the right edge and below the last control. Dialog units are not square, so
// the two differ in pixels.
struct LayoutMargins {
  int right = 0;
  int bottom = 0;
};

struct LayoutPlan {
  std::vector<LayoutRect> rects;  // in the order of the input
  int clientHeight = 0;           // at least the given one; more when the texts need it
};

// Clears the overlaps of headings with their rules and of labels with the control below them,
// widens one-line controls whose text does not fit (up to the right margin; a control that
// ends at the margin widens to the left), lets the rules beside a widened heading give way and
// moves other controls beside it by the same amount, grows wrapping labels (and one-line texts
// still too long at the margin) downwards and moves everything below them down by the same
// amount, then keeps the bottom block below the last control. The gaps it leaves between
// controls grow with the screen's dots per inch.
LayoutPlan PlanLayout(const std::vector<LayoutControl>& controls, int clientWidth, int clientHeight,
                      LayoutMargins margins, int dotsPerInch = 96);
