#include "app/settings_page.h"

#include <commctrl.h>

#include "app/creation_slot.h"
#include "app/shell_resource_ids.h"
#include "layout/dialog_layout.h"

namespace {

// The notice icon's size in pixels at 96 dots per inch.
constexpr int kNoticeIconSize = 32;
constexpr SMHelpLink kNoticeLinks[] = {
    {IDC_NOTICE_LINK, TextId::kChromiumLink, TextId::kChromiumUrl},
};

// All pages of a sheet are the size of its page area: a page whose texts need more height makes
// the area (and every page already created) taller; pages created later get the new size.
void GrowPageArea(HWND sheet, int pageHeight) {
  auto tabs = reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETTABCONTROL, 0, 0));
  if (tabs == nullptr) return;
  RECT area{};
  GetClientRect(tabs, &area);
  SendMessageW(tabs, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
  int grow = pageHeight - (area.bottom - area.top);
  if (grow <= 0) return;
  GrowWindowHeight(sheet, grow);
  GrowWindowHeight(tabs, grow);
  for (HWND child = GetWindow(sheet, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    wchar_t className[16] = {};
    GetClassNameW(child, className, 16);
    if (wcscmp(className, L"#32770") == 0) GrowWindowHeight(child, grow);
  }
}

}  // namespace

SettingsPage::SettingsPage(int templateId, const SMAppObjects& objects, SMDialogTexts texts)
    : SMDialogObject(objects.system, objects.strings, texts), objects_(objects) {
  descriptor_.dwSize = PROPSHEETPAGEW_V1_SIZE;
  descriptor_.dwFlags = PSP_USECALLBACK;
  descriptor_.hInstance = GetModuleHandleW(nullptr);
  descriptor_.pszTemplate = MAKEINTRESOURCEW(templateId);
  descriptor_.pfnDlgProc = &SMDialogObject::StartDialogProc;
  descriptor_.lParam = reinterpret_cast<LPARAM>(this);
  descriptor_.pfnCallback = &PageCallback;
}

SettingsPage::~SettingsPage() {
  if (noticeIcon_ != nullptr) DestroyIcon(noticeIcon_);
}

void SettingsPage::SetTitle(std::wstring title) {
  title_ = std::move(title);
  descriptor_.pszTitle = title_.c_str();
  descriptor_.dwFlags |= PSP_USETITLE;
}

UINT CALLBACK SettingsPage::PageCallback(HWND, UINT message, PROPSHEETPAGEW* page) {
  if (message == PSPCB_CREATE) {
    SMCreationSlot<SMDialogObject>::Put(reinterpret_cast<SettingsPage*>(page->lParam));
  }
  return 1;
}

bool SettingsPage::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  switch (message) {
    case WM_INITDIALOG:
      if (rightToLeft_) MakeRightToLeft(window_);
      SetDeclaredTexts();
      if (GetDlgItem(window_, IDC_NOTICE_TEXT) != nullptr) SetNoticeTexts();
      SetMoreTexts();
      GrowPageArea(GetParent(window_),
                   FitDialogToTexts(window_, {IDC_NOTICE_RULE, IDC_NOTICE_ICON, IDC_NOTICE_TEXT,
                                              IDC_NOTICE_LINK}));
      RefreshFromSettings();
      AfterInit();
      justInitialised_ = true;
      result = TRUE;
      return true;
    case WM_COMMAND:
      if (HIWORD(wParam) != BN_CLICKED) return false;
      result = 0;
      return OnButtonClicked(LOWORD(wParam));
    case WM_NOTIFY:
      return OnNotify(*reinterpret_cast<const NMHDR*>(lParam), result);
    default:
      return false;
  }
}

bool SettingsPage::OnButtonClicked(int) {
  return false;
}

void SettingsPage::SetNoticeTexts() {
  SetControlText(IDC_NOTICE_TEXT, TextId::kChromiumNotice);
  for (const SMHelpLink& link : kNoticeLinks) SetControlLink(link.controlId, link.caption);
  // The template's icon comes in the standard size; the icon file has one drawn for each scale.
  if (noticeIcon_ == nullptr) {
    const int size = ScaledPixels(window_, kNoticeIconSize);
    noticeIcon_ = static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr),
                                                MAKEINTRESOURCEW(IDI_VANTREL_NOTICE), IMAGE_ICON,
                                                size, size, LR_DEFAULTCOLOR));
  }
  if (noticeIcon_ != nullptr) {
    SendDlgItemMessageW(window_, IDC_NOTICE_ICON, STM_SETICON,
                        reinterpret_cast<WPARAM>(noticeIcon_), 0);
  }
}

bool SettingsPage::OnNotify(const NMHDR& header, LRESULT& result) {
  if (header.code == NM_CLICK &&
      (OpenDeclaredLink(header.idFrom) || OpenLinkIn(kNoticeLinks, header.idFrom))) {
    result = 0;
    return true;
  }
  // Only the sheet's notifications to this page are the base's business.
  if (header.hwndFrom != window_ && header.hwndFrom != GetParent(window_)) return false;
  switch (header.code) {
    case PSN_SETACTIVE:
      if (!justInitialised_) RefreshFromSettings();
      justInitialised_ = false;
      result = 0;
      return true;
    case PSN_KILLACTIVE:
    case PSN_APPLY:
    case PSN_RESET:
    case PSN_HELP:
    case PSN_WIZBACK:
    case PSN_WIZNEXT:
    case PSN_WIZFINISH:
    case PSN_QUERYCANCEL:
    case PSN_TRANSLATEACCELERATOR:
    case PSN_QUERYINITIALFOCUS:
      result = 0;
      return true;
    default:
      return false;
  }
}
