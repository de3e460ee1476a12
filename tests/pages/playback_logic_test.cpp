// The Playback page's radio group.
#include "pages/playback_logic.h"

#include <gtest/gtest.h>

#include "support/test_profile.h"

// The page shows a choice only once it is stored.
TEST(PlaybackLogic, FailedMasterWriteKeepsThePreviousChoice) {
  SitesProfile profile;
  SMSettingsManager settings(*profile.platform);
  profile.BreakSettingsFolder();
  EXPECT_EQ(ApplyPlaybackChoice(settings, kPlaybackAsk, kPlaybackBlock), kPlaybackAsk);
}
