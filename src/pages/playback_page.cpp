#include "pages/playback_page.h"

#include "dialogs/site_list_dialog.h"
#include "pages/playback_logic.h"
#include "pages/playback_page_ids.h"

PlaybackPage::PlaybackPage(const SMAppObjects& objects)
    : SettingsPage(IDD_PLAYBACK_PAGE, objects) {}

void PlaybackPage::SetTexts() {
  SetControlText(IDC_P2P_HEADING, 41001);
  SetControlText(IDC_P2P_EXPLANATION, 41002);
  SetControlText(IDC_P2P_ASK, 41004);
  SetControlText(IDC_P2P_BLOCK, 41005);
  SetControlText(IDC_P2P_BY_SITE, 41006);
  SetControlLink(IDC_P2P_HELP_LINK, 41003);
  SetNoticeTexts();
}

void PlaybackPage::RefreshFromSettings() {
  ShowView(ReadPlaybackView(objects_.settings));
}

void PlaybackPage::ShowView(const PlaybackView& view) {
  index_ = view.index;
  EnableWindow(GetDlgItem(window_, IDC_P2P_BY_SITE), view.bySiteEnabled);
  WriteRadioGroup(IDC_P2P_ASK, index_);
}

bool PlaybackPage::OnButtonClicked(int controlId) {
  if (controlId == IDC_P2P_BY_SITE) {
    PeerNetworkingBySiteDialog dialog(objects_.system, objects_.strings, objects_.settings,
                                      IsRightToLeftUser(objects_.system));
    dialog.Run();
    RefreshFromSettings();
    return true;
  }
  if (controlId != IDC_P2P_ASK && controlId != IDC_P2P_BLOCK) {
    return SettingsPage::OnButtonClicked(controlId);
  }
  ShowView(ApplyPlaybackChoice(objects_.settings, index_, ReadRadioGroup(IDC_P2P_ASK)));
  return true;
}

uint32_t PlaybackPage::LinkUrlId(int controlId) {
  return controlId == IDC_P2P_HELP_LINK ? 13002 : SettingsPage::LinkUrlId(controlId);
}
