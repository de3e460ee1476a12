#include "pages/playback_logic.h"

PlaybackView PlaybackViewForIndex(int index) {
  return PlaybackView{index, index != kPlaybackBlock};
}

PlaybackView PlaybackViewForUplink(std::optional<bool> disallowP2PUplink) {
  return PlaybackViewForIndex(disallowP2PUplink.value_or(false) ? kPlaybackBlock : kPlaybackAsk);
}

PlaybackView ReadPlaybackView(SMSettingsManager& settings) {
  return PlaybackViewForUplink(
      settings.GetValueAs<bool>(SMSettingsManager::MasterDomain(), "disallowP2PUplink"));
}

PlaybackView ApplyPlaybackChoice(SMSettingsManager& settings, int previousIndex, int chosenIndex) {
  const bool block = chosenIndex == kPlaybackBlock;
  if (!settings.SetValue(SMSettingsManager::MasterDomain(),
                         SettingValue::Boolean("disallowP2PUplink", block))) {
    return PlaybackViewForIndex(previousIndex);
  }
  return ReadPlaybackView(settings);
}
