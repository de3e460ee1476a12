// The Storage page's radio group: what each click stores, in the master file and every site.
#include "pages/storage_logic.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "support/scripted_prompts.h"
#include "support/test_profile.h"

namespace fs = std::filesystem;

namespace {

const std::vector<std::string> kThreeSites = {"a.com", "b.org", "c.net"};

fs::path StoredSiteData(const TestProfile& profile) {
  return profile.SharedObjects() / "QX7T2" / "a.com" / "game.sol";
}

TEST(StorageLogic, EachChoiceStoresTheLimitEverywhere) {
  struct Case {
    int chosen;
    std::vector<bool> answers;
    int shown;
    std::optional<double> limit;  // nothing: no file changes
    bool dataGone = false;
  };
  const Case cases[] = {
      {.chosen = kStorageBlock,
       .answers = {true},
       .shown = kStorageBlock,
       .limit = -1.0,
       .dataGone = true},
      {.chosen = kStorageBlock, .answers = {false}, .shown = kStorageAsk},
      // No radio checked stores what Allow stores; a click on the checked radio writes again.
      {.chosen = -1, .shown = -1, .limit = 100.0},
      {.chosen = kStorageAsk, .shown = kStorageAsk, .limit = 0.0},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE("chosen " + std::to_string(test.chosen));
    SitesProfile profile(kThreeSites);
    WriteFileBytes(StoredSiteData(profile), "progress");
    // A site's limit set by hand must be overwritten as well.
    ASSERT_TRUE(
        SMSettingsManager(*profile.platform).SetValue("b.org", SettingValue::Number("klimit", 10)));
    SMSettingsManager settings(*profile.platform);
    const std::string masterBefore = ReadFileBytes(profile.MasterFile());
    ScriptedPrompts prompts(test.answers);
    EXPECT_EQ(ApplyStorageChoice(settings, prompts, kStorageAsk, test.chosen), test.shown);

    EXPECT_EQ(prompts.asked.size(), test.answers.size());
    if (!test.limit) {
      EXPECT_EQ(ReadFileBytes(profile.MasterFile()), masterBefore);
      EXPECT_EQ(profile.Stored<double>("b.org", "klimit"), 10.0);
    } else {
      EXPECT_EQ(profile.Stored<double>(kMasterDomain, "defaultklimit"), test.limit);
      SMSettingsManager nextRun(*profile.platform);  // whose page shows a radio for the same limit
      EXPECT_EQ(StorageLimitForIndex(ReadStorageIndex(nextRun)), test.limit);
      for (const std::string& site : kThreeSites) {
        EXPECT_EQ(profile.Stored<double>(site, "klimit"), test.limit) << site;
      }
    }
    EXPECT_EQ(fs::exists(StoredSiteData(profile)), !test.dataGone);
  }
}

TEST(StorageLogic, FailedSiteWriteStillVisitsEverySite) {
  SitesProfile profile({"a.com", "b.org"});
  // A listed name that cannot be a folder of its own, between two good sites. (The next run
  // would drop it from the list, so it is listed in this run only.)
  SMSettingsManager settings(*profile.platform);
  SettingArray sites;
  for (const char* name : {"a.com", "../evil", "b.org"}) {
    sites.Append(SettingValue::Boolean(name, true));
  }
  ASSERT_TRUE(settings.SetValue(kMasterDomain, SettingValue::Array("domains", sites)));
  ScriptedPrompts prompts;

  EXPECT_EQ(ApplyStorageChoice(settings, prompts, kStorageAllow, kStorageAsk), kStorageAllow);
  // The values already written stay written.
  EXPECT_EQ(profile.Stored<double>(kMasterDomain, "defaultklimit"), 0.0);
  EXPECT_EQ(profile.Stored<double>("a.com", "klimit"), 0.0);
  EXPECT_EQ(profile.Stored<double>("b.org", "klimit"), 0.0);
  EXPECT_FALSE(fs::exists(profile.SettingsFolder() / "evil"));
}

// Block confirmed over a master file that cannot be written: the previous radio stays, and no
// site loses its settings or its stored data.
TEST(StorageLogic, FailedMasterWriteTouchesNoSite) {
  SitesProfile profile({"a.com"});
  WriteFileBytes(StoredSiteData(profile), "progress");
  const std::string siteBefore = ReadFileBytes(profile.SiteFile("a.com"));
  SMSettingsManager settings(*profile.platform);
  ASSERT_NE(settings.GetKnownSites(), nullptr);  // loaded before the folder breaks
  const fs::path moved = profile.BreakSettingsFolder();
  ScriptedPrompts prompts({true});

  EXPECT_EQ(ApplyStorageChoice(settings, prompts, kStorageAllow, kStorageBlock), kStorageAllow);
  EXPECT_EQ(ReadFileBytes(moved / "#a.com" / "settings.sol"), siteBefore);
  EXPECT_EQ(ReadFileBytes(StoredSiteData(profile)), "progress");
}

}  // namespace
