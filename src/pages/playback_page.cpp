#include "pages/playback_page.h"

#include "app/radio_group.h"
#include "dialogs/site_list_dialog.h"
#include "pages/playback_logic.h"
#include "pages/playback_page_ids.h"

PlaybackPage::PlaybackPage(const SMAppObjects& objects)
    : SettingsPage(IDD_PLAYBACK_PAGE, objects) {}

void PlaybackPage::SetTexts() {
  SetControlText(IDC_P2P_HEADING, TextId::kPeerAssistedHeading);
  SetControlText(IDC_P2P_EXPLANATION, TextId::kPeerAssistedExplanation);
  SetControlText(IDC_P2P_ASK, TextId::kPeerAssistedAsk);
  SetControlText(IDC_P2P_BLOCK, TextId::kPeerAssistedBlock);
  SetControlText(IDC_P2P_BY_SITE, TextId::kPeerAssistedBySite);
  SetControlLink(IDC_P2P_HELP_LINK, TextId::kPeerAssistedLink);
  SetNoticeTexts();
}

void PlaybackPage::RefreshFromSettings() {
  ShowView(ReadPlaybackView(objects_.settings));
}

void PlaybackPage::ShowView(const PlaybackView& view) {
  index_ = view.index;
  EnableWindow(GetDlgItem(window_, IDC_P2P_BY_SITE), view.bySiteEnabled);
  WriteRadioGroup(window_, IDC_P2P_ASK, index_);
}

bool PlaybackPage::OnButtonClicked(int controlId) {
  if (controlId == IDC_P2P_BY_SITE) {
    PeerNetworkingBySiteDialog dialog(objects_.system, objects_.strings, objects_.settings);
    dialog.Run();
    RefreshFromSettings();
    return true;
  }
  if (controlId != IDC_P2P_ASK && controlId != IDC_P2P_BLOCK) {
    return SettingsPage::OnButtonClicked(controlId);
  }
  ShowView(ApplyPlaybackChoice(objects_.settings, index_, ReadRadioGroup(window_, IDC_P2P_ASK)));
  return true;
}

std::optional<TextId> PlaybackPage::LinkUrlId(int controlId) {
  return controlId == IDC_P2P_HELP_LINK ? TextId::kPeerAssistedUrl
                                        : SettingsPage::LinkUrlId(controlId);
}
