#include "layout/dialog_layout.h"

#include <commctrl.h>

#include <string>
#include <utility>
#include <vector>

#include "layout/layout_plan.h"

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

// What a link shows: the caption without its <a> and </a> markers.
std::wstring WithoutLinkMarkup(std::wstring text) {
  for (const wchar_t* tag : {L"<a>", L"</a>"}) {
    for (size_t at = text.find(tag); at != std::wstring::npos; at = text.find(tag)) {
      text.erase(at, wcslen(tag));
    }
  }
  return text;
}

// Wine's link control breaks a long line inside a word, so a link that needs more than one line
// gets its line breaks from here, between words, measured with the dialog's font.
std::wstring BreakLinkCaption(HDC dc, const std::wstring& caption, int width) {
  const std::wstring open = L"<a>";
  const std::wstring close = L"</a>";
  if (caption.size() < open.size() + close.size() || caption.compare(0, 3, open) != 0 ||
      caption.compare(caption.size() - 4, 4, close) != 0) {
    return caption;
  }
  std::wstring text = caption.substr(3, caption.size() - 7);
  std::wstring broken;
  std::wstring line;
  size_t start = 0;
  while (start <= text.size()) {
    size_t end = text.find(L' ', start);
    if (end == std::wstring::npos) end = text.size();
    std::wstring word = text.substr(start, end - start);
    std::wstring candidate = line.empty() ? word : line + L' ' + word;
    SIZE extent{};
    GetTextExtentPoint32W(dc, candidate.c_str(), static_cast<int>(candidate.size()), &extent);
    if (extent.cx > width && !line.empty()) {
      broken += line + L'\n';
      line = word;
    } else {
      line = candidate;
    }
    start = end + 1;
  }
  return open + broken + line + close;
}

struct Measured {
  HWND control;
  LayoutControl layout;
};

LayoutControl Measure(HWND dialog, HWND control, HDC dc, int rightLimit) {
  LayoutControl layout;
  RECT bounds{};
  GetWindowRect(control, &bounds);
  MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&bounds), 2);
  // Mapping into a mirrored dialog swaps the two edges.
  if (bounds.left > bounds.right) std::swap(bounds.left, bounds.right);
  layout.rect = LayoutRect{bounds.left, bounds.top, bounds.right, bounds.bottom};
  std::wstring className = ClassOf(control);
  LONG style = GetWindowLongW(control, GWL_STYLE);
  std::wstring text = TextOf(control);
  bool isLink = _wcsicmp(className.c_str(), WC_LINK) == 0;
  if (isLink) text = WithoutLinkMarkup(text);
  if (_wcsicmp(className.c_str(), L"Static") == 0) {
    LONG type = style & SS_TYPEMASK;
    if (type == SS_ETCHEDHORZ) {
      layout.kind = LayoutKind::kRule;
      return layout;
    }
    if (type != SS_LEFT && type != SS_RIGHT && type != SS_CENTER) return layout;
  } else if (_wcsicmp(className.c_str(), L"Button") != 0 && !isLink) {
    return layout;
  }
  if (text.empty()) return layout;
  SIZE extent{};
  GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &extent);
  bool isLabel = _wcsicmp(className.c_str(), L"Static") == 0;
  if (isLabel && (style & SS_TYPEMASK) == SS_RIGHT) {
    layout.kind = LayoutKind::kFixed;  // right-aligned labels keep their right edge
    return layout;
  }
  // A label or link taller than one line wraps; everything else is one line of text.
  if ((isLabel || isLink) && layout.rect.height() > extent.cy * 3 / 2) {
    RECT wrapped{0, 0, layout.rect.width(), 0};
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &wrapped,
              DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    layout.kind = LayoutKind::kWrapping;
    layout.neededHeight = wrapped.bottom;
    return layout;
  }
  bool canWrap = isLink || (isLabel && (style & SS_TYPEMASK) == SS_LEFT);
  if (canWrap) {
    // Widened first; should the text still not fit at the margin, it wraps onto more lines.
    layout.kind = LayoutKind::kOneLine;
    layout.neededWidth = extent.cx + 2;
    int widest = rightLimit - layout.rect.left;
    if (layout.neededWidth > widest && widest > 0) {
      RECT wrapped{0, 0, widest, 0};
      DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &wrapped,
                DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
      layout.neededHeight = wrapped.bottom;
    }
    return layout;
  }
  if (isLabel) return layout;  // centred labels keep their place
  LONG buttonType = style & BS_TYPEMASK;
  bool box = buttonType == BS_AUTORADIOBUTTON || buttonType == BS_RADIOBUTTON ||
             buttonType == BS_AUTOCHECKBOX || buttonType == BS_CHECKBOX;
  int decoration = box ? GetSystemMetrics(SM_CXMENUCHECK) + 8 : 16;
  layout.kind = LayoutKind::kOneLine;
  layout.neededWidth = extent.cx + decoration;
  return layout;
}

}  // namespace

void FitDialogToTexts(HWND dialog) {
  RECT client{};
  GetClientRect(dialog, &client);
  RECT margin{0, 0, 7, 0};
  MapDialogRect(dialog, &margin);
  int rightLimit = client.right - margin.right;

  HDC dc = GetDC(dialog);
  auto font = reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0));
  HGDIOBJ previous = font != nullptr ? SelectObject(dc, font) : nullptr;
  std::vector<Measured> measured;
  for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr;
       control = GetWindow(control, GW_HWNDNEXT)) {
    measured.push_back({control, Measure(dialog, control, dc, rightLimit)});
  }
  std::vector<LayoutControl> controls;
  for (const Measured& entry : measured) controls.push_back(entry.layout);
  std::vector<LayoutRect> planned = PlanLayout(controls, client.right, margin.right);
  for (size_t index = 0; index < measured.size(); ++index) {
    if (planned[index] == controls[index].rect) continue;
    const LayoutRect& rect = planned[index];
    HWND control = measured[index].control;
    MoveWindow(control, rect.left, rect.top, rect.width(), rect.height(), TRUE);
    if (controls[index].neededHeight > 0 && _wcsicmp(ClassOf(control).c_str(), WC_LINK) == 0) {
      std::wstring caption = BreakLinkCaption(dc, TextOf(control), rect.width() - 2);
      SetWindowTextW(control, caption.c_str());
    }
  }
  if (previous != nullptr) SelectObject(dc, previous);
  ReleaseDC(dialog, dc);
}
