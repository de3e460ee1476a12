#include "pages/camera_mic_page.h"

#include <commctrl.h>

#include "app/radio_group.h"
#include "dialogs/site_list_dialog.h"
#include "layout/dialog_layout.h"
#include "pages/camera_mic_logic.h"
#include "pages/camera_mic_page_ids.h"

namespace {

// The explanation wraps at this width (pixels at 96 dots per inch).
constexpr int kTooltipWidth = 400;

constexpr SMControlText kCaptions[] = {
    {IDC_CAMERA_MIC_HEADING, TextId::kCameraMicHeading},
    {IDC_CAMERA_MIC_ASK, TextId::kCameraMicAsk},
    {IDC_CAMERA_MIC_BLOCK, TextId::kCameraMicBlock},
    {IDC_CAMERA_MIC_BY_SITE, TextId::kCameraMicBySite},
};

}  // namespace

CameraMicPage::CameraMicPage(const SMAppObjects& objects)
    : SettingsPage(IDD_CAMERA_MIC_PAGE, objects, {kCaptions, {}}) {}

void CameraMicPage::RefreshFromSettings() {
  // The administrator's lock is not consulted here: after a return to the tab the radio shows
  // what is stored, while the controls stay disabled.
  WriteRadioGroup(window_, IDC_CAMERA_MIC_ASK, ReadCameraMicIndex(objects_.settings));
}

bool CameraMicPage::OnButtonClicked(int controlId) {
  if (controlId == IDC_CAMERA_MIC_BY_SITE) {
    CameraMicBySiteDialog dialog(objects_.system, objects_.strings, objects_.settings);
    dialog.Run();
    RefreshFromSettings();
    return true;
  }
  if (controlId != IDC_CAMERA_MIC_ASK && controlId != IDC_CAMERA_MIC_BLOCK) {
    return SettingsPage::OnButtonClicked(controlId);
  }
  // The radio keeps the user's choice even when it could not be stored.
  ApplyCameraMicChoice(objects_.settings, ReadRadioGroup(window_, IDC_CAMERA_MIC_ASK));
  return true;
}

void CameraMicPage::AfterInit() {
  if (IsCameraMicLockedByAdministrator(objects_.adminConfig)) ApplyAdministratorLock();
}

void CameraMicPage::ApplyAdministratorLock() {
  WriteRadioGroup(window_, IDC_CAMERA_MIC_ASK, kCameraMicBlock);
  for (int id :
       {IDC_CAMERA_MIC_HEADING, IDC_CAMERA_MIC_ASK, IDC_CAMERA_MIC_BLOCK, IDC_CAMERA_MIC_BY_SITE}) {
    EnableWindow(GetDlgItem(window_, id), FALSE);
  }
  // Disabled controls get no mouse messages, so the explanation hangs on the page itself over
  // the band from the heading to the by-site button.
  HWND tooltip = CreateWindowExW(0, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP,
                                 CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                                 window_, nullptr, GetModuleHandleW(nullptr), nullptr);
  if (tooltip == nullptr) return;
  SetWindowPos(tooltip, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  RECT heading{};
  RECT button{};
  RECT client{};
  GetWindowRect(GetDlgItem(window_, IDC_CAMERA_MIC_HEADING), &heading);
  GetWindowRect(GetDlgItem(window_, IDC_CAMERA_MIC_BY_SITE), &button);
  MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&heading), 2);
  MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&button), 2);
  GetClientRect(window_, &client);
  std::optional<std::wstring> text = GetText(TextId::kCameraMicAdminBlocked);
  TTTOOLINFOW tool{};
  tool.cbSize = sizeof tool;
  tool.uFlags = TTF_SUBCLASS;
  tool.hwnd = window_;
  tool.rect = RECT{client.left, heading.top, client.right, button.bottom};
  tool.lpszText = text ? text->data() : const_cast<wchar_t*>(L"");
  SendMessageW(tooltip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  SendMessageW(tooltip, TTM_SETMAXTIPWIDTH, 0, ScaledPixels(window_, kTooltipWidth));
}
