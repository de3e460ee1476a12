// Interim stand-in until the string table lands; deleted then. English only.
#include <map>

#include "l10n/string_table.h"

namespace {
const std::map<uint32_t, const char*>& EnglishTexts() {
  static const std::map<uint32_t, const char*> texts{
      {12000, "Vantrel Player Settings Manager"},
      {21000, "Storage"},
      {31000, "Camera and Mic"},
      {41000, "Playback"},
      {101200, "Updates"},
      {51000, "Advanced"},
      {13000, "http://www.brinmor.com/go/learn_vp_settings_privacy_controls_en"},
      {13002, "http://www.brinmor.com/go/learn_vp_settings_peer_assisted_networking_en"},
      {13003, "http://www.brinmor.com/go/learn_vp_settings_protected_content_en"},
      {13004, "http://www.brinmor.com/go/learn_vp_settings_private_browsing_en"},
      {13009, "https://www.brinmor.com/go/vantrel-player-updates"},
      {13101,
       "The settings on this page are not applicable to Google Chrome or Chromium based browsers "
       "(PPAPI)."},
      {13102, "Learn more about configuring Vantrel Player with Chromium based browsers"},
      {13103, "http://www.brinmor.com/go/learn_vp_settings_chromium_en"},
      {11006, "Delete All\xE2\x80\xA6"},
      {21001, "Local Storage Settings"},
      {21002,
       "Local storage may be used by websites to save data about this computer's use of Vantrel "
       "Player, such as viewing history, game progress, saved work, preferences, or data that "
       "identifies this computer."},
      {21106, "Learn more about privacy controls"},
      {21004, "Allow sites to save information on this computer"},
      {21005, "Ask me before allowing new sites to save information on this computer"},
      {21006, "Block all sites from storing information on this computer"},
      {21007, "Local Storage Settings by Site\xE2\x80\xA6"},
      {21300, "Private Browsing"},
      {21301, "You may want to browse temporarily without saving local storage or history."},
      {21302, "Learn more about private browsing"},
      {31001, "Camera and Microphone Settings"},
      {31002, "Ask me when a site wants to use the camera or microphone (recommended)"},
      {31003, "Block all sites from using the camera and microphone"},
      {31004, "Camera and Microphone Settings by Site\xE2\x80\xA6"},
      {31005,
       "Camera and microphone use is always blocked. This override is set in your tss.cfg file, "
       "possibly by your system administrator."},
      {41001, "Peer-assisted Networking"},
      {41002,
       "Peer-assisted networking enables smoother media playback and features, such as chat, "
       "that connect to other computers. It may use additional bandwidth."},
      {41003, "Learn more about Peer-assisted Networking"},
      {41004, "Ask me when a site wants to use peer-assisted networking"},
      {41005, "Block all sites from using peer-assisted networking"},
      {41006, "Peer-assisted Networking Settings by Site\xE2\x80\xA6"},
      {51100, "Browsing Data and Settings"},
      {51101,
       "Delete all local storage, saved choices, settings, and other data used by content in "
       "Vantrel Player across all browsers on this computer."},
      {51400, "Developer Tools"},
      {51401, "Specify trusted locations for developer testing."},
      {51402, "Trusted Location Settings\xE2\x80\xA6"},
      {41100, "Protected Content"},
      {41101,
       "If you are selling or donating this computer, deauthorize it to prevent Vantrel Player "
       "from playing previously viewed protected content, such as movies or music you may have "
       "purchased."},
      {41102, "Learn more about protected content"},
      {41103, "Deauthorize This Computer\xE2\x80\xA6"},
      {101201,
       "Vantrel Player can automatically check for updates to help protect your computer. Not "
       "updating may leave this computer vulnerable to security threats."},
      {101202, "Allow Brinmor to install updates (recommended)"},
      {101209, "Notify me to install updates"},
      {101203, "Never check for updates (not recommended)"},
      {101208, "Change Update Settings"},
      {101205, "Check Now"},
      {102000, "ActiveX Version:"},
      {102001, "NPAPI Plug-in Version:"},
      {102002, "Not installed"},
      {103002, "PPAPI Plug-In Version:"},
  };
  return texts;
}
}  // namespace

const char* SMStringTable::GetString(uint32_t id) {
  auto found = EnglishTexts().find(id);
  return found == EnglishTexts().end() ? nullptr : found->second;
}

int SMUserLanguageStringTable::GetLanguageIndex() {
  return 0;
}

bool IsRightToLeftLanguage(uint16_t languageId) {
  uint16_t primary = languageId & 0x3ff;
  return primary == 1 || primary == 13;
}

bool IsRightToLeftUser(SMSystem& system) {
  return IsRightToLeftLanguage(system.UserDefaultUILanguage());
}
