#include "pages/playback_page.h"

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
  PlaybackView view = ReadPlaybackView(objects_.settings);
  EnableWindow(GetDlgItem(window_, IDC_P2P_BY_SITE), view.bySiteEnabled);
  WriteRadioGroup(IDC_P2P_ASK, view.index);
}

uint32_t PlaybackPage::LinkUrlId(int controlId) {
  return controlId == IDC_P2P_HELP_LINK ? 13002 : SettingsPage::LinkUrlId(controlId);
}
