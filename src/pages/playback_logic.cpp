#include "pages/playback_logic.h"

#include "settings/setting_keys.h"

PlaybackView PlaybackViewForUplink(std::optional<bool> disallowP2PUplink) {
  int index = disallowP2PUplink.value_or(false) ? kPlaybackBlock : kPlaybackAsk;
  return PlaybackView{index, index != kPlaybackBlock};
}

PlaybackView ReadPlaybackView(SMSettingsManager& settings) {
  return PlaybackViewForUplink(
      settings.GetValueAs<bool>(SMSettingsManager::MasterDomain(), kDisallowPeerUplink.name));
}

int ApplyPlaybackChoice(SMSettingsManager& settings, int previousIndex, int chosenIndex) {
  const bool block = chosenIndex == kPlaybackBlock;
  return settings.SetValue(SMSettingsManager::MasterDomain(),
                           SettingValue::Boolean(kDisallowPeerUplink.name, block))
             ? chosenIndex
             : previousIndex;
}
