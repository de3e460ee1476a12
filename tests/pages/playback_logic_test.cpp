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

// Only a stored boolean true blocks; the text "true" another program left there does not.
TEST(PlaybackLogic, AValueOfAnotherTypeShowsAskWithTheBySiteButton) {
  SitesProfile profile;
  SMSettingsManager settings(*profile.platform);
  ASSERT_TRUE(settings.SetValue(SMSettingsManager::MasterDomain(),
                                SettingValue::String("disallowP2PUplink", "true")));
  const PlaybackView view = ReadPlaybackView(settings);
  EXPECT_EQ(view.index, kPlaybackAsk);
  EXPECT_TRUE(view.bySiteEnabled);
}
