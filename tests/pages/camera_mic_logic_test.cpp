// The Camera and Mic page: the administrator's lock and what each click forces on every site.
#include "pages/camera_mic_logic.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "support/test_profile.h"

namespace fs = std::filesystem;

namespace {

// The administrator's lock reads its value as the player reads booleans (whose table is with
// the reader of booleans): one true, one false.
TEST(CameraMicLogic, AdministratorLock) {
  const std::pair<const char*, bool> cases[] = {{"AVHardwareDisable = yes\n", true},
                                                {"AVHardwareDisable=off\n", false}};
  for (const auto& [file, locked] : cases) {
    SMAdminConfig config("");
    config.LoadFromBytes(file);
    EXPECT_EQ(IsCameraMicLockedByAdministrator(config), locked) << file;
  }
}

// Only a stored boolean true blocks; the text "true" another program left there does not.
TEST(CameraMicLogic, AValueOfAnotherTypeShowsAsk) {
  SitesProfile profile;
  SMSettingsManager settings(*profile.platform);
  ASSERT_TRUE(settings.SetValue(kMasterDomain, SettingValue::String("defaultalways", "true")));
  EXPECT_EQ(ReadCameraMicIndex(settings), kCameraMicAsk);
}

TEST(CameraMicLogic, BlockThenAskForcesEveryListedSite) {
  SitesProfile profile({"a.com", "b.org", "c.net"});
  // One run of the program: a new run would drop the listed names that have no file yet.
  SMSettingsManager settings(*profile.platform);
  SettingArray sites = *settings.GetKnownSites();
  sites.Append(SettingValue::Boolean("d.io", true));
  ASSERT_TRUE(settings.SetValue(kMasterDomain, SettingValue::Array("domains", sites)));
  ASSERT_TRUE(settings.SetValue("a.com", SettingValue::Boolean("allow", true)));
  ASSERT_TRUE(settings.SetValue("c.net", SettingValue::Boolean("allowsecure", true)));
  const std::vector<std::string> listed = {"a.com", "b.org", "c.net", "d.io"};
  // Block asks on every site and forbids; Ask asks on every site.
  const int steps[] = {kCameraMicBlock, kCameraMicAsk, kCameraMicBlock, -1};
  for (int chosen : steps) {
    SCOPED_TRACE("chosen " + std::to_string(chosen));
    const bool block = chosen == kCameraMicBlock;
    EXPECT_EQ(ApplyCameraMicChoice(settings, chosen), chosen);
    EXPECT_EQ(profile.Stored<bool>(kMasterDomain, "defaultalways"), block);
    EXPECT_EQ(ReadCameraMicIndex(settings), block ? kCameraMicBlock : kCameraMicAsk);
    for (const std::string& site : listed) {
      std::vector<std::optional<bool>> stored;
      for (const char* name : {"always", "alwayssecure", "allow", "allowsecure"})
        stored.push_back(profile.Stored<bool>(site, name));
      EXPECT_EQ(stored, (std::vector<std::optional<bool>>{block, block, false, false})) << site;
    }
  }
}

// A master file that cannot be written: the radio keeps the user's choice, but no site's
// answers change.
TEST(CameraMicLogic, FailedMasterWriteTouchesNoSite) {
  SitesProfile profile({"a.com"});
  const std::string siteBefore = ReadFileBytes(profile.SiteFile("a.com"));
  SMSettingsManager settings(*profile.platform);
  ASSERT_NE(settings.GetKnownSites(), nullptr);  // loaded before the folder breaks
  const fs::path moved = profile.BreakSettingsFolder();

  EXPECT_EQ(ApplyCameraMicChoice(settings, kCameraMicBlock), kCameraMicBlock);
  EXPECT_EQ(ReadFileBytes(moved / "#a.com" / "settings.sol"), siteBefore);
}

}  // namespace
