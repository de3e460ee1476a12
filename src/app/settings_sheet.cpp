#include "app/settings_sheet.h"

#include <commctrl.h>

#include <utility>

#include "app/creation_slot.h"
#include "layout/dialog_layout.h"

namespace {

// The strip where OK and Cancel would be, in pixels at 96 dots per inch.
constexpr int kButtonStripHeight = 30;

}  // namespace

SettingsSheet::SettingsSheet(std::wstring caption, bool rightToLeft)
    : caption_(std::move(caption)), rightToLeft_(rightToLeft) {
  header_.dwSize = sizeof header_;
  header_.dwFlags = PSH_USECALLBACK | PSH_NOAPPLYNOW;
  header_.hInstance = GetModuleHandleW(nullptr);
  header_.pszCaption = caption_.c_str();
  header_.pfnCallback = &SheetCallback;
}

SettingsSheet::~SettingsSheet() {
  // Pages the sheet never took over are still ours to destroy.
  for (HPROPSHEETPAGE page : pages_) DestroyPropertySheetPage(page);
}

bool SettingsSheet::AddPage(SettingsPage& page) {
  HPROPSHEETPAGE handle = CreatePropertySheetPageW(&page.descriptor());
  if (handle == nullptr) return false;
  if (window_ != nullptr) {
    return SendMessageW(window_, PSM_ADDPAGE, 0, reinterpret_cast<LPARAM>(handle)) != 0;
  }
  pages_.push_back(handle);
  return true;
}

void SettingsSheet::SetActivePage(int index) {
  if (window_ != nullptr) {
    SendMessageW(window_, PSM_SETCURSEL, static_cast<WPARAM>(index), 0);
  } else {
    header_.nStartPage = static_cast<UINT>(index);
  }
}

INT_PTR SettingsSheet::RunModal(HWND parent) {
  header_.hwndParent = parent;
  header_.dwFlags &= ~static_cast<DWORD>(PSH_MODELESS);
  header_.nPages = static_cast<UINT>(pages_.size());
  header_.phpage = pages_.data();
  SMCreationSlot<SettingsSheet>::Put(this);
  INT_PTR result = PropertySheetW(&header_);
  SMCreationSlot<SettingsSheet>::Put(nullptr);
  // The sheet destroyed the pages it was given.
  pages_.clear();
  window_ = nullptr;
  return result;
}

int CALLBACK SettingsSheet::SheetCallback(HWND window, UINT message, LPARAM) {
  if (message != PSCB_INITIALIZED) return 0;
  if (SettingsSheet* sheet = SMCreationSlot<SettingsSheet>::Take()) sheet->OnInitialized(window);
  return 0;
}

void SettingsSheet::OnInitialized(HWND window) {
  window_ = window;
  ShowWindow(GetDlgItem(window, IDOK), SW_HIDE);
  ShowWindow(GetDlgItem(window, IDCANCEL), SW_HIDE);
  RECT bounds{};
  GetWindowRect(window, &bounds);
  MoveWindow(window, 0, 0, bounds.right - bounds.left,
             bounds.bottom - bounds.top - ScaledPixels(window, kButtonStripHeight), TRUE);
  LONG extended = GetWindowLongW(window, GWL_EXSTYLE) & ~WS_EX_CONTEXTHELP;
  if (rightToLeft_) extended |= WS_EX_LAYOUTRTL;
  SetWindowLongW(window, GWL_EXSTYLE, extended);
  if (rightToLeft_) {
    auto tabs = reinterpret_cast<HWND>(SendMessageW(window, PSM_GETTABCONTROL, 0, 0));
    if (tabs != nullptr) MakeRightToLeft(tabs);
  }
}
