#include "layout_check.h"

// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <algorithm>

#include "app_driver.h"
#include "layout/link_caption.h"
#include "platform/win32/utf16.h"

namespace {

// Room the button control keeps for itself: the frame of a push button, the box and the space
// after it of a radio button or check box; pixels at 96 dots per inch.
constexpr int kPushButtonFrame = 6;
constexpr int kBoxAndGap = 16;
// Space a list view keeps on both sides of a cell's text, and a header around its heading.
constexpr int kCellPadding = 12;

// The screen's dots per inch, which the program shares.
int ScreenDpi() {
  HDC screen = GetDC(nullptr);
  const int dotsPerInch = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return dotsPerInch;
}

// A size in pixels at 96 dots per inch on this screen.
int Scaled(int pixelsAt96) {
  return MulDiv(pixelsAt96, ScreenDpi(), 96);
}

struct Control {
  HWND window;
  int id;
  std::wstring className;
  LONG style;
  std::wstring text;
  RECT bounds;  // screen coordinates
};

std::wstring ClassOf(HWND window) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  return name;
}

std::string Describe(const Control& control) {
  std::string text = ToUtf8(control.text.substr(0, 40)).value_or("?");
  return "control " + std::to_string(control.id) + " (" + ToUtf8(control.className).value_or("?") +
         " \"" + text + "\")";
}

std::string Size(int width, int height) {
  return std::to_string(width) + "x" + std::to_string(height);
}

// The font every dialog template of the program names: 8 points of the shell's dialog face.
HFONT CreateDialogFont(int dotsPerInch) {
  return CreateFontW(-MulDiv(8, dotsPerInch, 72), 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                     DEFAULT_CHARSET, 0, 0, PROOF_QUALITY, FF_DONTCARE, L"MS Shell Dlg");
}

// Headings keep the design's widths, and some translations are too long for them already at
// 96 dots per inch; a heading that fits there must fit at every scale.
bool HeadingFitsAt96(const std::wstring& text, int scaledWidth) {
  HDC dc = GetDC(nullptr);
  HFONT font = CreateDialogFont(96);
  HGDIOBJ previous = SelectObject(dc, font);
  SIZE extent{};
  GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &extent);
  SelectObject(dc, previous);
  DeleteObject(font);
  ReleaseDC(nullptr, dc);
  return extent.cx + kCellPadding <= MulDiv(scaledWidth, 96, ScreenDpi());
}

// The room the text needs: wrapped at `width` (wider when one word alone is wider), or with its
// own line breaks only.
SIZE Needed(HDC dc, const std::wstring& text, int width, bool wraps) {
  RECT needed{0, 0, wraps ? std::max(width, 1) : 0, 0};
  DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &needed,
            DT_CALCRECT | DT_NOPREFIX | DT_EXPANDTABS | (wraps ? DT_WORDBREAK : 0));
  return SIZE{needed.right, needed.bottom};
}

// The text's room inside the control; false when the control shows no text of its own.
bool TextRoom(const Control& control, int* width, int* height, bool* wraps) {
  int fullWidth = control.bounds.right - control.bounds.left;
  *height = control.bounds.bottom - control.bounds.top;
  if (control.className == L"Static") {
    LONG type = control.style & SS_TYPEMASK;
    *width = fullWidth;
    *wraps = type != SS_LEFTNOWORDWRAP;
    return type == SS_LEFT || type == SS_RIGHT || type == SS_CENTER || type == SS_LEFTNOWORDWRAP;
  }
  if (control.className == L"Button") {
    LONG type = control.style & BS_TYPEMASK;
    if (type == BS_GROUPBOX || type == BS_OWNERDRAW) return false;
    bool push = type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON;
    *width = fullWidth - Scaled(push ? kPushButtonFrame : kBoxAndGap);
    *wraps = (control.style & BS_MULTILINE) != 0;
    return true;
  }
  if (_wcsicmp(control.className.c_str(), WC_LINK) == 0) {
    // Wine's link control breaks a long line inside a word: a link's lines must fit as given.
    *width = fullWidth;
    *wraps = false;
    return true;
  }
  return false;
}

void CheckText(HDC dc, const Control& control, std::vector<std::string>& problems) {
  int width = 0;
  int height = 0;
  bool wraps = false;
  std::wstring text = ShownText(control.text);
  if (text.empty() || !TextRoom(control, &width, &height, &wraps)) return;
  SIZE needed = Needed(dc, text, width, wraps);
  if (needed.cx > width || needed.cy > height) {
    problems.push_back(Describe(control) + ": the text needs " + Size(needed.cx, needed.cy) +
                       ", the control gives " + Size(width, height));
  }
}

// Rows are filled after the layout ran, in columns of fixed widths: every cell must fit, and
// every heading that fits at 96 dots per inch (the heading is row -1 in the report).
void CheckListCells(HDC dc, const Control& list, std::vector<std::string>& problems) {
  auto header = reinterpret_cast<HWND>(SendMessageW(list.window, LVM_GETHEADER, 0, 0));
  int columns =
      header != nullptr ? static_cast<int>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0)) : 0;
  for (int row = -1; row < ListRowCount(list.window); ++row) {
    for (int column = 0; column < columns; ++column) {
      std::wstring text =
          row < 0 ? ListColumnText(list.window, column) : ListRowText(list.window, row, column);
      auto width = static_cast<int>(SendMessageW(list.window, LVM_GETCOLUMNWIDTH, column, 0));
      const int needed = Needed(dc, text, 0, false).cx + Scaled(kCellPadding);
      if (needed > width && (row >= 0 || HeadingFitsAt96(text, width))) {
        problems.push_back(Describe(list) + " row " + std::to_string(row) + " column " +
                           std::to_string(column) + " \"" + ToUtf8(text).value_or("?") +
                           "\": the text needs " + std::to_string(needed) + ", the column gives " +
                           std::to_string(width));
      }
    }
  }
}

std::vector<Control> VisibleControls(HWND container) {
  std::vector<Control> controls;
  for (HWND child = GetWindow(container, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    if (!IsWindowVisible(child)) continue;
    RECT bounds{};
    GetWindowRect(child, &bounds);
    controls.push_back(Control{child, GetDlgCtrlID(child), ClassOf(child),
                               GetWindowLongW(child, GWL_STYLE), WindowText(child), bounds});
  }
  return controls;
}

}  // namespace

std::vector<std::wstring> ShownTexts(HWND container) {
  std::vector<std::wstring> texts;
  int width = 0;
  int height = 0;
  bool wraps = false;
  for (const Control& control : VisibleControls(container)) {
    if (TextRoom(control, &width, &height, &wraps)) texts.push_back(ShownText(control.text));
  }
  return texts;
}

std::vector<std::string> LayoutProblems(HWND container) {
  const std::vector<Control> controls = VisibleControls(container);
  RECT client{};
  GetClientRect(container, &client);
  MapWindowPoints(container, nullptr, reinterpret_cast<POINT*>(&client), 2);
  // A mirrored window maps its left edge to the right.
  if (client.left > client.right) std::swap(client.left, client.right);

  std::vector<std::string> problems;
  HDC dc = GetDC(nullptr);
  HFONT font = CreateDialogFont(ScreenDpi());
  HGDIOBJ previous = SelectObject(dc, font);
  for (size_t index = 0; index < controls.size(); ++index) {
    const Control& control = controls[index];
    CheckText(dc, control, problems);
    if (control.className == WC_LISTVIEWW) CheckListCells(dc, control, problems);
    const RECT& box = control.bounds;
    if (box.left < client.left || box.top < client.top || box.right > client.right ||
        box.bottom > client.bottom) {
      problems.push_back(Describe(control) + ": lies outside its parent");
    }
    for (size_t other = index + 1; other < controls.size(); ++other) {
      RECT both{};
      if (IntersectRect(&both, &box, &controls[other].bounds)) {
        problems.push_back(Describe(control) + " overlaps " + Describe(controls[other]));
      }
    }
  }
  SelectObject(dc, previous);
  DeleteObject(font);
  ReleaseDC(nullptr, dc);
  return problems;
}
