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

PlaybackView PlaybackViewForIndex(int index);
PlaybackView PlaybackViewForUplink(std::optional<bool> disallowP2PUplink);
PlaybackView ReadPlaybackView(SMSettingsManager& settings);

// Stores a click on the radio group and returns what the page must show: the stored choice, or
// the previous one when the master settings could not be written (memory keeps the new value
// then, but the user must not be shown a choice that is not on disk).
PlaybackView ApplyPlaybackChoice(SMSettingsManager& settings, int previousIndex, int chosenIndex);
