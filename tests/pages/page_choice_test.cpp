#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "pages/camera_mic_logic.h"
#include "pages/playback_logic.h"
#include "pages/storage_logic.h"
#include "pages/updates_logic.h"
#include "platform/update_service.h"
#include "settings/settings_manager.h"
#include "support/scripted_prompts.h"
#include "support/test_profile.h"

namespace fs = std::filesystem;

namespace {

const std::string kMaster = SMSettingsManager::MasterDomain();

// A profile whose master file lists the given sites, each with its settings file.
struct SitesProfile : TestProfile {
  explicit SitesProfile(const std::vector<std::string>& sites) {
    SMSettingsManager setup(*platform);
    for (const std::string& site : sites) EXPECT_TRUE(setup.AddSite(site)) << site;
  }
  // A value as the next run of the program reads it from disk.
  template <typename T>
  std::optional<T> Stored(const std::string& domain, const std::string& name) {
    return SMSettingsManager(*platform).GetValueAs<T>(domain, name);
  }
  fs::path StoredSiteData() const { return SharedObjects() / "QX7T2" / "a.com" / "game.sol"; }
};

const std::vector<std::string> kThreeSites = {"a.com", "b.org", "c.net"};

TEST(StorageChoiceTest, EachChoiceStoresTheLimitEverywhere) {
  struct Case {
    int previous;
    int chosen;
    std::vector<bool> answers;
    int shown;
    std::optional<double> limit;  // nothing: no file changes
    bool dataDeleted;
  };
  const Case cases[] = {
      {kStorageAllow, kStorageBlock, {true}, kStorageBlock, -1.0, true},
      {kStorageAsk, kStorageBlock, {false}, kStorageAsk, std::nullopt, false},
      // No radio checked stores what Allow stores; a click on the checked radio writes again.
      {kStorageAsk, -1, {}, -1, 100.0, false},
      {kStorageAsk, kStorageAsk, {}, kStorageAsk, 0.0, false},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE("chosen " + std::to_string(test.chosen));
    SitesProfile profile(kThreeSites);
    WriteFileBytes(profile.StoredSiteData(), "progress");
    // A site's limit set by hand must be overwritten as well.
    ASSERT_TRUE(
        SMSettingsManager(*profile.platform).SetValue("b.org", SettingValue::Number("klimit", 10)));
    SMSettingsManager settings(*profile.platform);
    const std::string masterBefore = ReadFileBytes(profile.MasterFile());
    ScriptedPrompts prompts(test.answers);
    EXPECT_EQ(ApplyStorageChoice(settings, prompts, test.previous, test.chosen), test.shown);

    EXPECT_EQ(prompts.asked.size(), test.answers.size());
    if (!test.limit) {
      EXPECT_EQ(ReadFileBytes(profile.MasterFile()), masterBefore);
      EXPECT_EQ(profile.Stored<double>("b.org", "klimit"), 10.0);
    } else {
      EXPECT_EQ(profile.Stored<double>(kMaster, "defaultklimit"), test.limit);
      for (const std::string& site : kThreeSites) {
        EXPECT_EQ(profile.Stored<double>(site, "klimit"), test.limit) << site;
      }
    }
    EXPECT_EQ(fs::exists(profile.StoredSiteData()), !test.dataDeleted);
  }
}

TEST(StorageChoiceTest, FailedSiteWriteStillVisitsEverySite) {
  SitesProfile profile({"a.com", "b.org"});
  // A listed name that cannot be a folder of its own, between two good sites. (The next run
  // would drop it from the list, so it is listed in this run only.)
  SMSettingsManager settings(*profile.platform);
  SettingArray sites;
  for (const char* name : {"a.com", "../evil", "b.org"}) {
    sites.Append(SettingValue::Boolean(name, true));
  }
  ASSERT_TRUE(settings.SetValue(kMaster, SettingValue::Array("domains", sites)));
  ScriptedPrompts prompts;

  EXPECT_EQ(ApplyStorageChoice(settings, prompts, kStorageAllow, kStorageAsk), kStorageAllow);
  // The values already written stay written.
  EXPECT_EQ(profile.Stored<double>(kMaster, "defaultklimit"), 0.0);
  EXPECT_EQ(profile.Stored<double>("a.com", "klimit"), 0.0);
  EXPECT_EQ(profile.Stored<double>("b.org", "klimit"), 0.0);
  EXPECT_FALSE(fs::exists(profile.SettingsFolder() / "evil"));
}

TEST(CameraMicChoiceTest, BlockThenAskForcesEveryListedSite) {
  SitesProfile profile(kThreeSites);
  // One run of the program: a new run would drop the listed names that have no file yet.
  SMSettingsManager settings(*profile.platform);
  SettingArray sites = *settings.GetKnownSites();
  sites.Append(SettingValue::Boolean("d.io", true));
  ASSERT_TRUE(settings.SetValue(kMaster, SettingValue::Array("domains", sites)));
  ASSERT_TRUE(settings.SetValue("a.com", SettingValue::Boolean("allow", true)));
  ASSERT_TRUE(settings.SetValue("c.net", SettingValue::Boolean("allowsecure", true)));
  const std::vector<std::string> listed = {"a.com", "b.org", "c.net", "d.io"};
  // Block asks on every site and forbids; Ask asks on every site.
  const int steps[] = {kCameraMicBlock, kCameraMicAsk, kCameraMicBlock, -1};
  for (int chosen : steps) {
    SCOPED_TRACE("chosen " + std::to_string(chosen));
    const bool block = chosen == kCameraMicBlock;
    EXPECT_EQ(ApplyCameraMicChoice(settings, chosen), chosen);
    EXPECT_EQ(profile.Stored<bool>(kMaster, "defaultalways"), block);
    for (const std::string& site : listed) {
      std::vector<std::optional<bool>> stored;
      for (const char* name : {"always", "alwayssecure", "allow", "allowsecure"})
        stored.push_back(profile.Stored<bool>(site, name));
      EXPECT_EQ(stored, (std::vector<std::optional<bool>>{block, block, false, false})) << site;
    }
  }
}

// A master file that cannot be written: Storage and Playback keep showing the previous choice,
// Camera and Mic the new one; none of them touches a site's file or its stored data.
TEST(PageChoiceTest, FailedMasterWriteTouchesNoSite) {
  using Apply = int (*)(SMSettingsManager&, SMUserPrompts&);
  const std::pair<Apply, int> cases[] = {
      {[](SMSettingsManager& settings, SMUserPrompts& prompts) {
         return ApplyStorageChoice(settings, prompts, kStorageAllow, kStorageBlock);
       },
       kStorageAllow},
      {[](SMSettingsManager& settings, SMUserPrompts&) {
         return ApplyCameraMicChoice(settings, kCameraMicBlock);
       },
       kCameraMicBlock},
      {[](SMSettingsManager& settings, SMUserPrompts&) {
         return ApplyPlaybackChoice(settings, kPlaybackAsk, kPlaybackBlock).index;
       },
       kPlaybackAsk},
  };
  for (const auto& [apply, shown] : cases) {
    SitesProfile profile({"a.com"});
    WriteFileBytes(profile.StoredSiteData(), "progress");
    const std::string siteBefore = ReadFileBytes(profile.SiteFile("a.com"));
    SMSettingsManager settings(*profile.platform);
    ASSERT_NE(settings.GetKnownSites(), nullptr);  // loaded before the folder breaks
    const fs::path moved = profile.temp.path() / "moved";
    fs::rename(profile.SettingsFolder(), moved);
    WriteFileBytes(profile.SettingsFolder(), "not a folder");
    ScriptedPrompts prompts({true});

    EXPECT_EQ(apply(settings, prompts), shown);
    EXPECT_EQ(ReadFileBytes(moved / "#a.com" / "settings.sol"), siteBefore) << shown;
    EXPECT_EQ(ReadFileBytes(profile.StoredSiteData()), "progress") << shown;
  }
}

// What is stored, and how a failed write is reported, is the update service's (its tests sit
// with it); the page shows the chosen mode only once it is stored.
TEST(UpdatesChoiceTest, ModeStaysWhenNothingCouldBeStored) {
  TempFolder temp;
  FakeSystem system;
  SMAdminConfig writable(PathToUtf8(temp.path() / "tss.cfg"));
  EXPECT_EQ(ApplyUpdatesChoice(system, &writable, kUpdateNever, kUpdateAutomatically),
            kUpdateAutomatically);
  SMAdminConfig unwritable(PathToUtf8(temp.path() / "missing" / "tss.cfg"));
  EXPECT_EQ(ApplyUpdatesChoice(system, &unwritable, kUpdateNotify, kUpdateNever), kUpdateNotify);
  // Without a mode (no radio checked) nothing is stored either.
  EXPECT_EQ(ApplyUpdatesChoice(system, &writable, kUpdateAutomatically, -1), kUpdateAutomatically);
  EXPECT_EQ(ReadUpdateMode(writable), kUpdateAutomatically);
}

}  // namespace
