#include "pages/playback_logic.h"

PlaybackView PlaybackViewForUplink(std::optional<bool> disallowP2PUplink) {
  int index = disallowP2PUplink.value_or(false) ? kPlaybackBlock : kPlaybackAsk;
  return PlaybackView{index, index != kPlaybackBlock};
}

PlaybackView ReadPlaybackView(SMSettingsManager& settings) {
  return PlaybackViewForUplink(
      settings.GetValueAs<bool>(SMSettingsManager::MasterDomain(), "disallowP2PUplink"));
}

int ApplyPlaybackChoice(SMSettingsManager& settings, int previousIndex, int chosenIndex) {
  const bool block = chosenIndex == kPlaybackBlock;
  return settings.SetValue(SMSettingsManager::MasterDomain(),
                           SettingValue::Boolean("disallowP2PUplink", block))
             ? chosenIndex
             : previousIndex;
}
