#include "pages/playback_page.h"

#include "app/radio_group.h"
#include "dialogs/site_list_dialog.h"
#include "pages/playback_logic.h"
#include "pages/playback_page_ids.h"

namespace {

constexpr SMControlText kCaptions[] = {
    {IDC_P2P_HEADING, TextId::kPeerAssistedHeading},
    {IDC_P2P_EXPLANATION, TextId::kPeerAssistedExplanation},
    {IDC_P2P_ASK, TextId::kPeerAssistedAsk},
    {IDC_P2P_BLOCK, TextId::kPeerAssistedBlock},
    {IDC_P2P_BY_SITE, TextId::kPeerAssistedBySite},
};

constexpr SMHelpLink kLinks[] = {
    {IDC_P2P_HELP_LINK, TextId::kPeerAssistedLink, TextId::kPeerAssistedUrl},
};

}  // namespace

PlaybackPage::PlaybackPage(const SMAppObjects& objects)
    : SettingsPage(IDD_PLAYBACK_PAGE, objects, {kCaptions, kLinks}) {}

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
