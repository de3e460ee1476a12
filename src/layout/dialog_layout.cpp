#include "layout/dialog_layout.h"

#include <commctrl.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "layout/layout_plan.h"
#include "layout/line_breaks.h"
#include "layout/link_caption.h"

namespace {

std::wstring ClassOf(HWND control) {
  wchar_t name[64] = {};
  GetClassNameW(control, name, 64);
  return name;
}

std::wstring TextOf(HWND control) {
  int length = GetWindowTextLengthW(control);
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  GetWindowTextW(control, text.data(), length + 1);
  text.resize(static_cast<size_t>(length));
  return text;
}

int ExtentOf(HDC dc, const std::wstring& text) {
  SIZE extent{};
  GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &extent);
  return extent.cx;
}

// A mark that combines with the letter before it: a line never starts with one.
bool IsCombining(wchar_t letter) {
  WORD type = 0;
  GetStringTypeW(CT_CTYPE3, &letter, 1, &type);
  return (type & (C3_NONSPACING | C3_DIACRITIC | C3_VOWELMARK)) != 0;
}

// Appends a word wider than the line letter by letter, going on to a new line where it must
// (scripts that write without spaces break between letters); the link markers stay whole.
void AppendLetters(HDC dc, const std::wstring& word, int width, std::wstring& broken,
                   std::wstring& shown) {
  for (size_t at = 0; at < word.size(); ++at) {
    bool marker = false;
    for (const wchar_t* mark : {L"<a>", L"</a>"}) {
      size_t length = wcslen(mark);
      if (!marker && word.compare(at, length, mark) == 0) {
        broken += mark;
        at += length - 1;
        marker = true;
      }
    }
    if (marker) continue;
    wchar_t letter = word[at];
    if (!shown.empty() && !IsCombining(letter) && ExtentOf(dc, shown + letter) > width) {
      broken += L'\n';
      shown.clear();
    }
    broken += letter;
    shown += letter;
  }
}

// Wine's controls neither break at an invisible break nor draw it as nothing, so the program
// breaks such texts itself and takes the marks out.
bool HasInvisibleBreaks(const std::wstring& text) {
  return text.find(kInvisibleBreak) != std::wstring::npos;
}

// Line breaks where the script allows them (see line_breaks.h), measured as shown with the
// dialog's font: Wine's link control breaks a line that is too long anywhere, even inside a
// word, and its labels do not break at invisible marks. The text's own line breaks stay.
std::wstring BreakCaption(HDC dc, const std::wstring& caption, int width) {
  std::wstring broken;
  size_t lineStart = 0;
  while (true) {
    size_t lineEnd = caption.find(L'\n', lineStart);
    std::wstring line = caption.substr(
        lineStart, lineEnd == std::wstring::npos ? std::wstring::npos : lineEnd - lineStart);
    std::wstring shown;
    bool first = true;
    for (const LineUnit& unit : SplitAtBreaks(line)) {
      // A unit wider than any line is broken between letters anyway: it runs on from where the
      // line has room rather than leaving a short line behind.
      const bool runsOn =
          ExtentOf(dc, ShownText(unit.text)) > width && ExtentOf(dc, shown + unit.gap) <= width;
      if (!first && !runsOn && ExtentOf(dc, shown + unit.gap + ShownText(unit.text)) > width) {
        broken += L'\n';
        shown.clear();
      } else {
        broken += unit.gap;
        shown += unit.gap;
      }
      AppendLetters(dc, unit.text, width, broken, shown);
      first = false;
    }
    if (lineEnd == std::wstring::npos) return broken;
    broken += L'\n';
    lineStart = lineEnd + 1;
  }
}

// The room of a text with its own line breaks only.
SIZE Unwrapped(HDC dc, const std::wstring& text) {
  RECT needed{0, 0, 0, 0};
  DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &needed, DT_CALCRECT | DT_NOPREFIX);
  return SIZE{needed.right, needed.bottom};
}

struct Measured {
  HWND control;
  LayoutControl layout;
};

bool IsBoxButton(LONG style) {
  LONG type = style & BS_TYPEMASK;
  return type == BS_AUTORADIOBUTTON || type == BS_RADIOBUTTON || type == BS_AUTOCHECKBOX ||
         type == BS_CHECKBOX || type == BS_AUTO3STATE || type == BS_3STATE;
}

// The size of the text wrapped at `width`; wider than that when one word alone is.
SIZE Wrapped(HDC dc, const std::wstring& text, int width) {
  RECT wrapped{0, 0, std::max(width, 1), 0};
  DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &wrapped,
            DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
  return SIZE{wrapped.right, wrapped.bottom};
}

int WrappedHeight(HDC dc, const std::wstring& text, int width) {
  return Wrapped(dc, text, width).cy;
}

LayoutRect RectInDialog(HWND dialog, HWND control) {
  RECT bounds{};
  GetWindowRect(control, &bounds);
  MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&bounds), 2);
  // Mapping into a mirrored dialog swaps the two edges.
  if (bounds.left > bounds.right) std::swap(bounds.left, bounds.right);
  return LayoutRect{bounds.left, bounds.top, bounds.right, bounds.bottom};
}

// A label's or link's text: wrapped at its width when the control is taller than one line,
// otherwise widened first and wrapped onto more lines only when it does not fit at the margin.
// `wrap` gives the room of the text wrapped at a width.
LayoutControl MeasureText(LayoutControl layout, SIZE extent, int rightLimit,
                          const std::function<SIZE(int)>& wrap) {
  if (layout.rect.height() > extent.cy * 3 / 2) {
    layout.kind = LayoutKind::kWrapping;
    SIZE wrapped = wrap(layout.rect.width() - 2);
    layout.neededHeight = wrapped.cy;
    // A word longer than the line (scripts without spaces) widens the label.
    if (wrapped.cx > layout.rect.width() - 2) layout.neededWidth = wrapped.cx + 2;
    return layout;
  }
  layout.kind = LayoutKind::kOneLine;
  layout.neededWidth = extent.cx + 2;
  layout.neededHeight = extent.cy;
  int widest = rightLimit - layout.rect.left;
  if (layout.neededWidth > widest && widest > 0) layout.neededHeight = wrap(widest - 2).cy;
  return layout;
}

LayoutControl MeasureLabel(LayoutControl layout, LONG style, HDC dc, const std::wstring& text,
                           SIZE extent, int rightLimit) {
  LONG type = style & SS_TYPEMASK;
  if (type == SS_ETCHEDHORZ) {
    layout.kind = LayoutKind::kRule;
    return layout;
  }
  if ((type != SS_LEFT && type != SS_RIGHT) || text.empty()) return layout;
  layout =
      MeasureText(layout, extent, rightLimit, [&](int width) { return Wrapped(dc, text, width); });
  if (type == SS_RIGHT && layout.kind == LayoutKind::kOneLine) {
    // Never wrapped: the column makes room for it instead.
    layout.rightAligned = true;
    layout.neededHeight = extent.cy;
  }
  return layout;
}

LayoutControl MeasureButton(LayoutControl layout, LONG style, HDC dc, const std::wstring& text,
                            SIZE extent, int rightLimit) {
  if ((style & BS_TYPEMASK) == BS_GROUPBOX || text.empty()) return layout;
  bool box = IsBoxButton(style);
  const int dotsPerInch = GetDeviceCaps(dc, LOGPIXELSX);
  // The box and the space after it, or the button's frame and inner padding.
  int decoration = box ? GetSystemMetrics(SM_CXMENUCHECK) + ScaleFrom96(8, dotsPerInch)
                       : ScaleFrom96(16, dotsPerInch);
  int padding = ScaleFrom96(box ? 2 : 8, dotsPerInch);
  layout.kind = LayoutKind::kOneLine;
  layout.neededWidth = extent.cx + decoration;
  int widest = rightLimit - layout.rect.left;
  if (layout.neededWidth > widest && widest > decoration) {
    layout.neededHeight = WrappedHeight(dc, text, widest - decoration) + padding;
  }
  return layout;
}

LayoutControl Measure(HWND dialog, HWND control, HDC dc, int rightLimit) {
  LayoutControl layout;
  layout.rect = RectInDialog(dialog, control);
  std::wstring className = ClassOf(control);
  LONG style = GetWindowLongW(control, GWL_STYLE);
  std::wstring caption = TextOf(control);
  bool isLink = _wcsicmp(className.c_str(), WC_LINK) == 0;
  std::wstring text = isLink ? ShownText(caption) : caption;
  SIZE extent{};
  GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &extent);
  if (_wcsicmp(className.c_str(), L"Static") == 0 && HasInvisibleBreaks(text)) {
    // Measured as it will be shown: broken here, without its marks.
    extent = Unwrapped(dc, BreakCaption(dc, text, INT_MAX));
    return MeasureText(layout, extent, rightLimit,
                       [&](int width) { return Unwrapped(dc, BreakCaption(dc, text, width)); });
  }
  if (_wcsicmp(className.c_str(), L"Static") == 0) {
    return MeasureLabel(layout, style, dc, text, extent, rightLimit);
  }
  if (_wcsicmp(className.c_str(), L"Button") == 0) {
    return MeasureButton(layout, style, dc, text, extent, rightLimit);
  }
  if (!isLink || text.empty()) return layout;
  return MeasureText(layout, extent, rightLimit, [&](int width) {
    return Unwrapped(dc, ShownText(BreakCaption(dc, caption, width)));
  });
}

// Buttons draw only one line unless told otherwise.
void AllowMoreLines(HWND control) {
  if (_wcsicmp(ClassOf(control).c_str(), L"Button") != 0) return;
  LONG style = GetWindowLongW(control, GWL_STYLE);
  SetWindowLongW(control, GWL_STYLE, style | BS_MULTILINE);
}

void GrowPopupTo(HWND dialog, int clientHeight) {
  if ((GetWindowLongW(dialog, GWL_STYLE) & WS_CHILD) != 0) return;
  RECT client{};
  GetClientRect(dialog, &client);
  int grow = clientHeight - client.bottom;
  if (grow > 0) GrowWindowHeight(dialog, grow);
}

}  // namespace

void GrowWindowHeight(HWND window, int grow) {
  RECT frame{};
  GetWindowRect(window, &frame);
  SetWindowPos(window, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top + grow,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

int FitDialogToTexts(HWND dialog, std::initializer_list<int> bottomBlockIds) {
  RECT client{};
  GetClientRect(dialog, &client);
  RECT margin{0, 0, 7, 7};
  MapDialogRect(dialog, &margin);
  int rightLimit = client.right - margin.right;

  HDC dc = GetDC(dialog);
  auto font = reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0));
  HGDIOBJ previous = font != nullptr ? SelectObject(dc, font) : nullptr;
  std::vector<Measured> measured;
  for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr;
       control = GetWindow(control, GW_HWNDNEXT)) {
    // Hidden controls take no room.
    if ((GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE) == 0) continue;
    Measured entry{control, Measure(dialog, control, dc, rightLimit)};
    int id = GetDlgCtrlID(control);
    for (int blockId : bottomBlockIds) entry.layout.bottomBlock |= id == blockId;
    measured.push_back(entry);
  }
  std::vector<LayoutControl> controls;
  for (const Measured& entry : measured) controls.push_back(entry.layout);
  // The texts were measured against rightLimit: the plan must cap them at the same edge.
  LayoutPlan plan =
      PlanLayout(controls, client.right, client.bottom, LayoutMargins{margin.right, margin.bottom},
                 GetDeviceCaps(dc, LOGPIXELSX));
  for (size_t index = 0; index < measured.size(); ++index) {
    const LayoutRect& rect = plan.rects[index];
    HWND control = measured[index].control;
    if (controls[index].rightAligned) {
      // Wine drops the last character of some right-aligned texts ("ActiveX Version:" loses its
      // colon); a left-aligned label exactly as wide as its text looks the same and shows it.
      LONG style = GetWindowLongW(control, GWL_STYLE);
      SetWindowLongW(control, GWL_STYLE, (style & ~SS_TYPEMASK) | SS_LEFT);
    }
    std::wstring caption = TextOf(control);
    if (_wcsicmp(ClassOf(control).c_str(), WC_LINK) == 0 || HasInvisibleBreaks(caption)) {
      std::wstring broken = BreakCaption(dc, caption, rect.width() - 2);
      if (broken != caption) SetWindowTextW(control, broken.c_str());
    }
    if (rect == controls[index].rect) continue;
    if (rect.height() > controls[index].rect.height()) AllowMoreLines(control);
    MoveWindow(control, rect.left, rect.top, rect.width(), rect.height(), TRUE);
  }
  if (previous != nullptr) SelectObject(dc, previous);
  ReleaseDC(dialog, dc);
  GrowPopupTo(dialog, plan.clientHeight);
  return plan.clientHeight;
}

int DotsPerInch(HWND window) {
  HDC dc = GetDC(window);
  const int dotsPerInch = dc != nullptr ? GetDeviceCaps(dc, LOGPIXELSX) : 0;
  if (dc != nullptr) ReleaseDC(window, dc);
  return dotsPerInch > 0 ? dotsPerInch : USER_DEFAULT_SCREEN_DPI;
}

int ScaledPixels(HWND window, int pixelsAt96) {
  return MulDiv(pixelsAt96, DotsPerInch(window), USER_DEFAULT_SCREEN_DPI);
}
