#pragma once

#include "app/settings_page.h"
#include "pages/playback_logic.h"

// The Playback tab: peer-assisted networking asked per site or blocked for all.
class PlaybackPage : public SettingsPage {
 public:
  explicit PlaybackPage(const SMAppObjects& objects);
  void RefreshFromSettings() override;

 protected:
  bool OnButtonClicked(int controlId) override;

 private:
  void ShowView(const PlaybackView& view);

  int index_ = kPlaybackAsk;
};
