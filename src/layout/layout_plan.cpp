#include "layout/layout_plan.h"

#include <algorithm>
#include <numeric>

namespace {

// Space between a heading and the rule that continues it, at 96 dots per inch.
constexpr int kRuleGapAt96 = 4;
// Space between two controls that a layout puts next to or below each other, at 96 dots per inch.
constexpr int kGapAt96 = 6;

bool SharesRows(const LayoutRect& a, const LayoutRect& b) {
  return a.top < b.bottom && b.top < a.bottom;
}

class Planner {
 public:
  Planner(const std::vector<LayoutControl>& controls, int clientWidth, int margin, int dotsPerInch)
      : controls_(controls),
        limit_(clientWidth - margin),
        ruleGap_(ScaleFrom96(kRuleGapAt96, dotsPerInch)),
        gap_(ScaleFrom96(kGapAt96, dotsPerInch)) {
    for (const LayoutControl& control : controls) rects_.push_back(control.rect);
  }

  std::vector<LayoutRect>& rects() { return rects_; }

  // Everything whose top is at or below `from` (the bottom block aside) moves down.
  void MoveDownFrom(int from, int by, size_t except) {
    for (size_t other = 0; other < rects_.size(); ++other) {
      if (other == except || controls_[other].bottomBlock || rects_[other].top < from) continue;
      rects_[other].top += by;
      rects_[other].bottom += by;
    }
  }

  void Widen(size_t index, int neededWidth) {
    LayoutRect& rect = rects_[index];
    if (neededWidth <= rect.width()) return;
    // A control that ends at the margin (Close, Cancel) keeps its right edge.
    if (rect.right >= limit_ - 1 && rect.left > limit_ / 2) {
      WidenLeftwards(index, neededWidth);
      return;
    }
    int wanted = std::min(rect.left + neededWidth, limit_);
    int grow = wanted - rect.right;
    if (grow <= 0) return;
    int oldRight = rect.right;
    rect.right = wanted;
    std::vector<size_t> overflow;
    for (size_t other = 0; other < rects_.size(); ++other) {
      if (other == index || !SharesRows(rects_[other], rect)) continue;
      LayoutRect& beside = rects_[other];
      if (controls_[other].kind == LayoutKind::kRule) {
        // A rule keeps its right end and starts after the text; it may vanish.
        if (beside.right > oldRight) {
          beside.left = std::min(std::max(beside.left, rect.right + ruleGap_), beside.right);
        }
      } else if (beside.left >= oldRight) {
        // Fields and labels may end up narrower at the margin; a button whose text would no
        // longer fit goes to a row of its own.
        int newLeft = beside.left + grow;
        int newRight = std::min(beside.right + grow, limit_);
        bool textFits = controls_[other].kind != LayoutKind::kOneLine ||
                        newRight - newLeft >= controls_[other].neededWidth;
        if (!textFits && beside.width() <= limit_ - rect.left) {
          overflow.push_back(other);
        } else {
          beside.left = newLeft;
          beside.right = newRight;
        }
      }
    }
    if (!overflow.empty()) MoveToNewRow(index, overflow);
  }

  void Grow(size_t index, int neededHeight) {
    LayoutRect& rect = rects_[index];
    int grow = neededHeight - rect.height();
    if (grow <= 0) return;
    int oldBottom = rect.bottom;
    rect.bottom += grow;
    MoveDownFrom(oldBottom, grow, index);
  }

  // Overlaps the template itself has: a rule that starts inside its heading begins after the
  // heading's text, and a label that reaches into the control below ends above it when its
  // text leaves room for that.
  void Settle() {
    for (size_t rule = 0; rule < rects_.size(); ++rule) {
      if (controls_[rule].kind != LayoutKind::kRule) continue;
      for (size_t heading = 0; heading < rects_.size(); ++heading) {
        LayoutRect& text = rects_[heading];
        LayoutRect& line = rects_[rule];
        if (controls_[heading].kind != LayoutKind::kOneLine || !SharesRows(text, line) ||
            text.left >= line.left || text.right + ruleGap_ <= line.left) {
          continue;
        }
        text.right = std::max(text.left + controls_[heading].neededWidth, line.left - ruleGap_);
        line.left = std::min(std::max(line.left, text.right + ruleGap_), line.right);
      }
    }
    for (size_t upper = 0; upper < rects_.size(); ++upper) {
      int textHeight = controls_[upper].neededHeight;
      if (textHeight <= 0 || controls_[upper].kind == LayoutKind::kRule) continue;
      for (size_t lower = 0; lower < rects_.size(); ++lower) {
        LayoutRect& above = rects_[upper];
        const LayoutRect& below = rects_[lower];
        bool overlaps = below.top > above.top && below.top < above.bottom &&
                        below.left < above.right && above.left < below.right;
        if (overlaps && above.top + textHeight <= below.top) above.bottom = below.top;
      }
    }
  }

  // A right-aligned label ends up as wide as its own text, at the right edge of its column.
  void FitRightAligned() {
    for (size_t index = 0; index < rects_.size(); ++index) {
      if (!controls_[index].rightAligned) continue;
      LayoutRect& rect = rects_[index];
      rect.left = std::max(rect.left, rect.right - controls_[index].neededWidth);
    }
  }

  // The block keeps its place while it lies below every other control.
  void KeepBottomBlockBelow(int margin) {
    int lowest = 0;
    int blockTop = -1;
    for (size_t index = 0; index < rects_.size(); ++index) {
      if (controls_[index].bottomBlock) {
        blockTop = blockTop < 0 ? rects_[index].top : std::min(blockTop, rects_[index].top);
      } else {
        lowest = std::max(lowest, rects_[index].bottom);
      }
    }
    int shift = lowest + margin - blockTop;
    if (blockTop < 0 || shift <= 0) return;
    for (size_t index = 0; index < rects_.size(); ++index) {
      if (!controls_[index].bottomBlock) continue;
      rects_[index].top += shift;
      rects_[index].bottom += shift;
    }
  }

 private:
  void WidenLeftwards(size_t index, int neededWidth) {
    LayoutRect& rect = rects_[index];
    int oldLeft = rect.left;
    rect.left = std::max(rect.right - neededWidth, 0);
    // Neighbours on the left make room as far as they would overlap.
    int edge = rect.left;
    std::vector<size_t> leftNeighbours;
    for (size_t other = 0; other < rects_.size(); ++other) {
      if (other != index && controls_[other].kind != LayoutKind::kRule &&
          SharesRows(rects_[other], rect) && rects_[other].right <= oldLeft) {
        leftNeighbours.push_back(other);
      }
    }
    std::sort(leftNeighbours.begin(), leftNeighbours.end(),
              [&](size_t a, size_t b) { return rects_[a].right > rects_[b].right; });
    for (size_t other : leftNeighbours) {
      LayoutRect& beside = rects_[other];
      int overlap = beside.right + gap_ - edge;
      if (overlap > 0) {
        beside.left -= overlap;
        beside.right -= overlap;
      }
      edge = beside.left;
    }
  }

  // Controls pushed past the margin start a row of their own below, at the left edge of the
  // control that pushed them; everything below makes room for that row.
  void MoveToNewRow(size_t index, std::vector<size_t> overflow) {
    std::sort(overflow.begin(), overflow.end(),
              [&](size_t a, size_t b) { return rects_[a].left < rects_[b].left; });
    int rowBottom = rects_[index].bottom;
    int tallest = 0;
    for (size_t other : overflow) {
      rowBottom = std::max(rowBottom, rects_[other].bottom);
      tallest = std::max(tallest, rects_[other].height());
    }
    // The row's own controls all start above rowBottom, so only what lies below moves.
    MoveDownFrom(rowBottom, gap_ + tallest, index);
    int top = rowBottom + gap_;
    int left = rects_[index].left;
    for (size_t other : overflow) {
      LayoutRect& moved = rects_[other];
      int width = moved.width();
      moved = LayoutRect{left, top, left + width, top + moved.height()};
      left += width + gap_;
    }
  }

  const std::vector<LayoutControl>& controls_;
  int limit_;
  const int ruleGap_;
  const int gap_;
  std::vector<LayoutRect> rects_;
};

// Right-aligned labels of one column take the width of the widest of them.
std::vector<int> ColumnWidths(const std::vector<LayoutControl>& controls) {
  std::vector<int> widths;
  for (const LayoutControl& control : controls) {
    int width = control.neededWidth;
    if (control.rightAligned) {
      for (const LayoutControl& other : controls) {
        if (other.rightAligned && other.rect.left == control.rect.left &&
            other.rect.right == control.rect.right) {
          width = std::max(width, other.neededWidth);
        }
      }
    }
    widths.push_back(width);
  }
  return widths;
}

}  // namespace

int ScaleFrom96(int pixels, int dotsPerInch) {
  const long long product = static_cast<long long>(pixels) * dotsPerInch;
  const long long half = product < 0 ? -48 : 48;
  return static_cast<int>((product + half) / 96);
}

LayoutPlan PlanLayout(const std::vector<LayoutControl>& controls, int clientWidth, int clientHeight,
                      LayoutMargins margins, int dotsPerInch) {
  Planner planner(controls, clientWidth, margins.right, dotsPerInch);
  planner.Settle();
  std::vector<int> widths = ColumnWidths(controls);
  // Top to bottom, so that a control moved down is fitted at its new place.
  std::vector<size_t> order(controls.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [&](size_t a, size_t b) { return controls[a].rect.top < controls[b].rect.top; });
  for (size_t index : order) {
    LayoutKind kind = controls[index].kind;
    if (kind == LayoutKind::kOneLine || kind == LayoutKind::kWrapping) {
      planner.Widen(index, widths[index]);
    }
    if (kind == LayoutKind::kOneLine || kind == LayoutKind::kWrapping) {
      planner.Grow(index, controls[index].neededHeight);
    }
  }
  planner.FitRightAligned();
  planner.KeepBottomBlockBelow(margins.bottom);
  LayoutPlan plan{planner.rects(), clientHeight};
  for (const LayoutRect& rect : plan.rects) {
    plan.clientHeight = std::max(plan.clientHeight, rect.bottom + margins.bottom);
  }
  return plan;
}
