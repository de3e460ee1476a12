// The Playback page's radio group.
#include "pages/playback_logic.h"

#include <gtest/gtest.h>

#include "support/test_profile.h"

// The page shows a choice only once it is stored, and the by-site button follows what it shows,
// though memory keeps the new value.
TEST(PlaybackLogic, FailedMasterWriteKeepsThePreviousChoice) {
  SitesProfile profile;
  SMSettingsManager settings(*profile.platform);
  profile.BreakSettingsFolder();
  const PlaybackView shown = ApplyPlaybackChoice(settings, kPlaybackAsk, kPlaybackBlock);
  EXPECT_EQ(shown.index, kPlaybackAsk);
  EXPECT_TRUE(shown.bySiteEnabled);
}

// Only a stored boolean true blocks; the text "true" another program left there does not.
TEST(PlaybackLogic, AValueOfAnotherTypeShowsAskWithTheBySiteButton) {
  SitesProfile profile;
  SMSettingsManager settings(*profile.platform);
  ASSERT_TRUE(settings.SetValue(kMasterDomain, SettingValue::String("disallowP2PUplink", "true")));
  const PlaybackView view = ReadPlaybackView(settings);
  EXPECT_EQ(view.index, kPlaybackAsk);
  EXPECT_TRUE(view.bySiteEnabled);
}
