#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "pages/camera_mic_logic.h"
#include "pages/playback_logic.h"
#include "pages/storage_logic.h"
#include "pages/updates_logic.h"
#include "platform/update_service.h"
#include "settings/settings_manager.h"
#include "settings/settings_reader.h"
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
  // A value as the player reads it from the domain's file on disk.
  const SettingValue* Stored(const std::string& domain, const std::string& name) {
    fs::path file = domain == kMaster ? MasterFile() : SiteFile(domain);
    std::string objectName;
    tables_.push_back(SMSettingsReader(ReadFileBytes(file)).Parse(&objectName));
    return tables_.back() ? tables_.back()->Find(name) : nullptr;
  }
  std::optional<double> Number(const std::string& domain, const std::string& name) {
    return ValueAs<double>(Stored(domain, name));
  }
  std::optional<bool> Boolean(const std::string& domain, const std::string& name) {
    return ValueAs<bool>(Stored(domain, name));
  }
  fs::path StoredSiteData() const { return SharedObjects() / "QX7T2" / "a.com" / "game.sol"; }

 private:
  std::vector<std::unique_ptr<SettingsTable>> tables_;
};

const std::vector<std::string> kThreeSites = {"a.com", "b.org", "c.net"};

TEST(StorageChoiceTest, EachChoiceStoresTheLimitEverywhere) {
  struct Case {
    int previous;
    int chosen;
    std::vector<bool> answers;
    int shown;
    double limit;
    bool dataDeleted;
  };
  const Case cases[] = {
      {kStorageAllow, kStorageBlock, {true}, kStorageBlock, -1.0, true},
      {kStorageBlock, kStorageAsk, {}, kStorageAsk, 0.0, false},
      {kStorageAsk, kStorageAllow, {}, kStorageAllow, 100.0, false},
      // No radio checked stores what Allow stores; a click on the checked radio writes again.
      {kStorageAsk, -1, {}, -1, 100.0, false},
      {kStorageAsk, kStorageAsk, {}, kStorageAsk, 0.0, false},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE("chosen " + std::to_string(test.chosen));
    SitesProfile profile(kThreeSites);
    WriteFileBytes(profile.StoredSiteData(), "progress");
    // A site's limit set by hand must be overwritten as well.
    {
      SMSettingsManager setup(*profile.platform);
      ASSERT_TRUE(setup.SetValue("b.org", SettingValue::Number("klimit", 10)));
    }
    SMSettingsManager settings(*profile.platform);
    ScriptedPrompts prompts(test.answers);
    EXPECT_EQ(ApplyStorageChoice(settings, prompts, test.previous, test.chosen), test.shown);

    EXPECT_EQ(prompts.asked.size(), test.answers.size());
    if (!prompts.asked.empty()) {
      EXPECT_EQ(prompts.asked[0], (std::vector<uint32_t>{21102, 21103, 21100}));
    }
    EXPECT_EQ(profile.Number(kMaster, "defaultklimit"), test.limit);
    for (const std::string& site : kThreeSites) {
      EXPECT_EQ(profile.Number(site, "klimit"), test.limit) << site;
    }
    EXPECT_EQ(fs::exists(profile.StoredSiteData()), !test.dataDeleted);
  }
}

TEST(StorageChoiceTest, CancelledBlockChangesNothing) {
  SitesProfile profile(kThreeSites);
  WriteFileBytes(profile.StoredSiteData(), "progress");
  SMSettingsManager settings(*profile.platform);
  const std::string masterBefore = ReadFileBytes(profile.MasterFile());
  const std::string siteBefore = ReadFileBytes(profile.SiteFile("a.com"));
  ScriptedPrompts prompts({false});

  EXPECT_EQ(ApplyStorageChoice(settings, prompts, kStorageAsk, kStorageBlock), kStorageAsk);
  EXPECT_EQ(prompts.asked.size(), 1u);
  EXPECT_EQ(ReadFileBytes(profile.MasterFile()), masterBefore);
  EXPECT_EQ(ReadFileBytes(profile.SiteFile("a.com")), siteBefore);
  EXPECT_EQ(ReadFileBytes(profile.StoredSiteData()), "progress");
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
  EXPECT_EQ(profile.Number(kMaster, "defaultklimit"), 0.0);
  EXPECT_EQ(profile.Number("a.com", "klimit"), 0.0);
  EXPECT_EQ(profile.Number("b.org", "klimit"), 0.0);
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
  const char* const names[] = {"always", "allow", "alwayssecure", "allowsecure"};
  struct Step {
    int chosen;
    bool defaultAlways;
    bool values[4];
  };
  const Step steps[] = {
      {kCameraMicBlock, true, {true, false, true, false}},
      {kCameraMicAsk, false, {false, false, false, false}},
      {kCameraMicBlock, true, {true, false, true, false}},
      {-1, false, {false, false, false, false}},
  };
  for (const Step& step : steps) {
    SCOPED_TRACE("chosen " + std::to_string(step.chosen));
    EXPECT_EQ(ApplyCameraMicChoice(settings, step.chosen), step.chosen);
    EXPECT_EQ(profile.Boolean(kMaster, "defaultalways"), step.defaultAlways);
    for (const std::string& site : listed) {
      for (int value = 0; value < 4; ++value) {
        EXPECT_EQ(profile.Boolean(site, names[value]), step.values[value])
            << site << " " << names[value];
      }
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
         return ApplyPlaybackChoice(settings, kPlaybackAsk, kPlaybackBlock);
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

TEST(PlaybackChoiceTest, BlockAndAsk) {
  SitesProfile profile({"a.com"});
  const std::string siteBefore = ReadFileBytes(profile.SiteFile("a.com"));
  SMSettingsManager settings(*profile.platform);
  struct Step {
    int previous;
    int chosen;
    int shown;
    bool disallow;
  };
  const Step steps[] = {
      {kPlaybackAsk, kPlaybackBlock, kPlaybackBlock, true},
      {kPlaybackBlock, kPlaybackAsk, kPlaybackAsk, false},
      {kPlaybackAsk, kPlaybackBlock, kPlaybackBlock, true},
      {kPlaybackBlock, -1, -1, false},
  };
  for (const Step& step : steps) {
    EXPECT_EQ(ApplyPlaybackChoice(settings, step.previous, step.chosen), step.shown);
    EXPECT_EQ(profile.Boolean(kMaster, "disallowP2PUplink"), step.disallow) << step.chosen;
  }
  // The per-site peer-assisted answers are not this choice's business.
  EXPECT_EQ(ReadFileBytes(profile.SiteFile("a.com")), siteBefore);
}

// What is stored, and how a failed write is reported, is the update service's (its tests sit
// with it); the page shows the chosen mode only once it is stored.
TEST(UpdatesChoiceTest, ModeStaysWhenNothingCouldBeStored) {
  TempFolder temp;
  FakeSystem system;
  system.modulePath = "C:\\Program Files\\Vantrel\\VantrelPlayerApp.exe";
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
