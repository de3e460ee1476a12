#pragma once

#include <optional>

#include "settings/settings_manager.h"

// The Playback page's radio group: 0 Ask, 1 Block.
enum PlaybackChoice : int { kPlaybackAsk = 0, kPlaybackBlock = 1 };

struct PlaybackView {
  int index;
  // With every site blocked there is nothing to set per site.
  bool bySiteEnabled;
};

PlaybackView PlaybackViewForUplink(std::optional<bool> disallowP2PUplink);
PlaybackView ReadPlaybackView(SMSettingsManager& settings);

// Stores a click on the radio group: the chosen index, or the previous one when the master
// settings could not be written.
int ApplyPlaybackChoice(SMSettingsManager& settings, int previousIndex, int chosenIndex);
