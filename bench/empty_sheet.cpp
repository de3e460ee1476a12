// The yardstick of the start benchmark: a property sheet with one empty page and nothing else,
// shown as the settings manager shows its own sheet.
// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <cstdint>
#include <vector>

namespace {

// An empty dialog template for the page: no controls, the size of the program's pages.
std::vector<uint16_t> EmptyPageTemplate() {
  std::vector<uint16_t> words(sizeof(DLGTEMPLATE) / sizeof(uint16_t) + 3, 0);
  auto* dialog = reinterpret_cast<DLGTEMPLATE*>(words.data());
  dialog->style = WS_CHILD | WS_DISABLED | WS_CAPTION | DS_SETFONT;
  dialog->cx = 340;
  dialog->cy = 260;
  // Menu, class and title stay empty; then the font.
  words.push_back(8);
  for (wchar_t c : L"MS Shell Dlg") words.push_back(c);
  return words;
}

INT_PTR CALLBACK PageProc(HWND, UINT message, WPARAM, LPARAM) {
  return message == WM_INITDIALOG;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int) {
  INITCOMMONCONTROLSEX classes{sizeof classes, ICC_STANDARD_CLASSES | ICC_TAB_CLASSES};
  InitCommonControlsEx(&classes);
  std::vector<uint16_t> pageTemplate = EmptyPageTemplate();
  PROPSHEETPAGEW page{};
  page.dwSize = sizeof page;
  page.dwFlags = PSP_DLGINDIRECT | PSP_USETITLE;
  page.hInstance = instance;
  page.pResource = reinterpret_cast<DLGTEMPLATE*>(pageTemplate.data());
  page.pszTitle = L"Page";
  page.pfnDlgProc = PageProc;
  HPROPSHEETPAGE pages[] = {CreatePropertySheetPageW(&page)};
  PROPSHEETHEADERW header{};
  header.dwSize = sizeof header;
  header.dwFlags = PSH_NOAPPLYNOW;
  header.hInstance = instance;
  header.pszCaption = L"Empty Sheet";
  header.nPages = 1;
  header.phpage = pages;
  PropertySheetW(&header);
  return 0;
}
