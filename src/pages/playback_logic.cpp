#include "pages/playback_logic.h"

#include "settings/setting_keys.h"

PlaybackView PlaybackViewForIndex(int index) {
  return PlaybackView{index, index != kPlaybackBlock};
}

PlaybackView PlaybackViewForUplink(std::optional<bool> disallowP2PUplink) {
  return PlaybackViewForIndex(disallowP2PUplink.value_or(false) ? kPlaybackBlock : kPlaybackAsk);
}

PlaybackView ReadPlaybackView(SMSettingsManager& settings) {
  return PlaybackViewForUplink(
      settings.GetValueAs<bool>(SMSettingsManager::MasterDomain(), kDisallowPeerUplink.name));
}

PlaybackView ApplyPlaybackChoice(SMSettingsManager& settings, int previousIndex, int chosenIndex) {
  const bool block = chosenIndex == kPlaybackBlock;
  if (!settings.SetValue(SMSettingsManager::MasterDomain(),
                         SettingValue::Boolean(kDisallowPeerUplink.name, block))) {
    return PlaybackViewForIndex(previousIndex);
  }
  return ReadPlaybackView(settings);
}
