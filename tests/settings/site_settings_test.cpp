// The known sites: their settings files, their stored data, and names that must not reach
// outside their own folders.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "settings/settings_manager.h"
#include "settings/site_permissions.h"
#include "support/settings_bytes.h"
#include "support/test_profile.h"

using namespace settings_bytes;
namespace fs = std::filesystem;

namespace {

std::string SiteFileWith(const std::string& site, bool always, double klimit) {
  return Stream(Body(site + "/settings",
                     BooleanPair("p2pallow", false) + BooleanPair("always", always) +
                         BooleanPair("p2palways", false) + BooleanPair("allowsecure", false) +
                         BooleanPair("alwayssecure", always) + NumberPair("klimit", klimit) +
                         BooleanPair("allow", false)));
}

// The master file's list of sites, as the player writes it.
std::string Domains(const std::vector<std::string>& sites) {
  std::string elements;
  for (const std::string& site : sites) elements += Element(site, 1, Byte(1));
  return ArrayPair("domains", elements);
}

}  // namespace

// The site defaults come from the master file as it was when the first site was added in a run.
TEST(SiteSettings, AddSiteWritesTheDefaultsOfTheRunAndListsTheSiteOnce) {
  TestProfile profile;
  WriteFileBytes(profile.MasterFile(),
                 Stream(Body("settings", NumberPair("defaultklimit", 500) +
                                             BooleanPair("defaultalways", true))));
  SMSettingsManager manager(*profile.platform);
  EXPECT_TRUE(manager.AddSite("first.com"));
  EXPECT_TRUE(manager.SetValue(kMasterDomain, SettingValue::Number("defaultklimit", 20)));
  EXPECT_TRUE(manager.SetValue(kMasterDomain, SettingValue::Boolean("defaultalways", false)));
  EXPECT_TRUE(manager.AddSite("second.com"));
  EXPECT_EQ(ReadFileBytes(profile.SiteFile("first.com")), SiteFileWith("first.com", true, 500));
  EXPECT_EQ(ReadFileBytes(profile.SiteFile("second.com")), SiteFileWith("second.com", true, 500));
  EXPECT_NE(ReadFileBytes(profile.MasterFile()).find(Domains({"first.com", "second.com"})),
            std::string::npos);
  SMSettingsManager nextRun(*profile.platform);
  EXPECT_TRUE(nextRun.AddSite("third.com"));
  EXPECT_EQ(ReadFileBytes(profile.SiteFile("third.com")), SiteFileWith("third.com", false, 20));
  // The second time nothing is written at all.
  fs::remove(profile.MasterFile());
  fs::remove(profile.SiteFile("first.com"));
  EXPECT_TRUE(nextRun.AddSite("first.com"));
  EXPECT_FALSE(fs::exists(profile.MasterFile()));
  EXPECT_FALSE(fs::exists(profile.SiteFile("first.com")));
  EXPECT_EQ(KnownSiteNames(nextRun),
            (std::vector<std::string>{"first.com", "second.com", "third.com"}));
  // Keys a site file already has are kept; only missing ones are added.
  WriteFileBytes(profile.SiteFile("kept.net"),
                 Stream(Body("kept.net/settings", NumberPair("klimit", 10))));
  EXPECT_TRUE(nextRun.EnsureSiteDefaults("kept.net"));
  EXPECT_EQ(nextRun.GetValue("kept.net", "klimit")->number(), 10);
  EXPECT_EQ(nextRun.GetNames("kept.net").size(), 7u);
}

TEST(SiteSettings, KnownSitesWithoutASettingsFileAreForgottenInMemoryOnly) {
  TestProfile profile;
  WriteFileBytes(profile.MasterFile(),
                 Stream(Body("settings", Domains({"gone.com", "kept.com", "empty.com"}))));
  WriteFileBytes(profile.SiteFile("kept.com"), SiteFileWith("kept.com", false, 100));
  WriteFileBytes(profile.SiteFile("empty.com"), "");
  SMSettingsManager manager(*profile.platform);
  EXPECT_EQ(KnownSiteNames(manager), std::vector<std::string>{"kept.com"});
  EXPECT_NE(ReadFileBytes(profile.MasterFile()).find("gone.com"), std::string::npos);
}

TEST(SiteSettings, RemoveSiteDeletesItsDataAndOptionallyItsSettingsButKeepsItsTable) {
  TestProfile profile;
  const fs::path stored = profile.SharedObjects() / "QX7T2";
  fs::create_directories(stored);
  SMSettingsManager manager(*profile.platform);
  for (const char* site : {"a.com", "b.com"}) {
    ASSERT_TRUE(manager.AddSite(site));
    WriteFileBytes(stored / site / "game.sol", "data");
  }
  ASSERT_TRUE(manager.SetValue("b.com", SettingValue::Number("klimit", 7)));
  EXPECT_TRUE(manager.RemoveSite("a.com", false));
  EXPECT_TRUE(manager.RemoveSite("b.com", true));
  EXPECT_FALSE(fs::exists(stored / "a.com"));
  EXPECT_FALSE(fs::exists(stored / "b.com"));
  EXPECT_TRUE(fs::exists(profile.SiteFile("a.com")));
  EXPECT_EQ(KnownSiteNames(manager), std::vector<std::string>{"a.com"});
  // The removed site's table stays cached: reading it brings no file back, and adding it again
  // writes the values it had.
  ASSERT_NE(manager.GetValue("b.com", "klimit"), nullptr);
  EXPECT_EQ(manager.GetValue("b.com", "klimit")->number(), 7);
  EXPECT_FALSE(fs::exists(profile.SiteFile("b.com").parent_path()));
  EXPECT_TRUE(manager.AddSite("b.com"));
  EXPECT_EQ(ReadFileBytes(profile.SiteFile("b.com")), SiteFileWith("b.com", false, 7));

  // A site that is not listed: its folders go, the list is written back unchanged.
  WriteFileBytes(stored / "unlisted.com" / "x.sol", "data");
  WriteFileBytes(profile.SiteFile("unlisted.com"), SiteFileWith("unlisted.com", false, 100));
  EXPECT_TRUE(manager.RemoveSite("unlisted.com", true));
  EXPECT_FALSE(fs::exists(stored / "unlisted.com"));
  EXPECT_FALSE(fs::exists(profile.SiteFile("unlisted.com")));
  SMSettingsManager reread(*profile.platform);
  EXPECT_EQ(KnownSiteNames(reread), (std::vector<std::string>{"a.com", "b.com"}));
}

TEST(SiteSettings, RemovingTheMasterDomainDeletesEverySettingsFileButKeepsTheList) {
  TestProfile profile;
  const fs::path stored = profile.SharedObjects() / "QX7T2";
  WriteFileBytes(stored / "a.com" / "game.sol", "data");
  SMSettingsManager manager(*profile.platform);
  ASSERT_TRUE(manager.AddSite("a.com"));
  EXPECT_TRUE(manager.RemoveSite(kMasterDomain, true));
  EXPECT_FALSE(fs::exists(profile.SettingsFolder()));
  EXPECT_TRUE(fs::exists(stored / "a.com" / "game.sol"));
  EXPECT_EQ(KnownSiteNames(manager), std::vector<std::string>{"a.com"});
  EXPECT_TRUE(manager.RemoveSite(kMasterDomain, false));
}

// The stored data live in the first listed entry of the shared-objects folder.
TEST(SiteSettings, StoredBytesOfLocalComeFromTwoFolders) {
  TestProfile profile;
  const fs::path stored = profile.SharedObjects() / "QX7T2";
  fs::create_directories(profile.SharedObjects() / "9");
  WriteFileBytes(stored / "localhost" / "a.sol", std::string(100, 'a'));
  WriteFileBytes(stored / "#localWithNet" / "b" / "c.sol", std::string(20, 'b'));
  WriteFileBytes(stored / "local" / "d.sol", std::string(5000, 'd'));
  WriteFileBytes(stored / "example.com" / "e.sol", std::string(7, 'e'));
  SMSettingsManager manager(*profile.platform);
  const std::string base = manager.storedDataFolder();
  EXPECT_EQ(base, PathToUtf8(stored));
  EXPECT_EQ(manager.GetSiteStoredBytes(base, "local"), 120u);
  EXPECT_EQ(manager.GetSiteStoredBytes(base, "example.com"), 7u);
  EXPECT_EQ(manager.GetSiteStoredBytes(base, "absent.com"), 0u);
  EXPECT_EQ(manager.GetSiteStoredBytes(base, kMasterDomain), 0u);
}

TEST(SiteSettings, RemoveAllSitesEmptiesDataCacheAndSettingsButKeepsGlobals) {
  TestProfile profile;
  const fs::path vxCache = PathFromUtf8(profile.platform->VXCacheFolder());
  WriteFileBytes(vxCache / "v.bin", "v");
  WriteFileBytes(profile.SharedObjects() / "QX7T2" / "a.com" / "x.sol", "x");
  WriteFileBytes(profile.SharedObjects() / "OTHER" / "b.com" / "x.sol", "x");
  WriteFileBytes(profile.dataRoot / "outside-shared-objects.txt", "keep");
  SMSettingsManager manager(*profile.platform);
  ASSERT_TRUE(manager.AddSite("a.com"));
  ASSERT_TRUE(manager.SetValue(kMasterDomain, SettingValue::Number("defaultklimit", 42)));

  EXPECT_TRUE(manager.RemoveAllSites(true));
  EXPECT_TRUE(fs::is_empty(profile.SharedObjects()));
  EXPECT_FALSE(fs::exists(vxCache));
  EXPECT_FALSE(fs::exists(profile.SiteFile("a.com").parent_path()));
  EXPECT_EQ(ReadFileBytes(profile.dataRoot / "outside-shared-objects.txt"), "keep");
  SMSettingsManager reread(*profile.platform);
  EXPECT_EQ(reread.GetValue(kMasterDomain, "defaultklimit")->number(), 42);
  EXPECT_EQ(KnownSiteNames(reread), std::vector<std::string>{});

  // Without settings, the site files and the list stay.
  ASSERT_TRUE(reread.AddSite("c.com"));
  WriteFileBytes(profile.SharedObjects() / "QX7T2" / "c.com" / "x.sol", "x");
  EXPECT_TRUE(reread.RemoveAllSites(false));
  EXPECT_TRUE(fs::exists(profile.SiteFile("c.com")));
  EXPECT_EQ(KnownSiteNames(reread), std::vector<std::string>{"c.com"});
  EXPECT_TRUE(fs::is_empty(profile.SharedObjects()));
}

#ifdef _WIN32
TEST(SiteSettings, SiteDataUnderTheAppContainerGoesToo) {
  TestProfile profile;
  const fs::path stored = profile.SharedObjects() / "QX7T2";
  WriteFileBytes(stored / "a.com" / "x.sol", "x");
  WriteFileBytes(stored / "#AppContainer" / "a.com" / "y.sol", "y");
  WriteFileBytes(stored / "#AppContainer" / "b.com" / "z.sol", "z");
  fs::create_directories(profile.SharedObjects() / "9");
  SMSettingsManager manager(*profile.platform);
  EXPECT_EQ(manager.appContainerFolder(), PathToUtf8(stored / "#AppContainer"));
  EXPECT_TRUE(manager.RemoveSiteStoredData("a.com"));
  EXPECT_FALSE(fs::exists(stored / "a.com"));
  EXPECT_FALSE(fs::exists(stored / "#AppContainer" / "a.com"));
  EXPECT_TRUE(fs::exists(stored / "#AppContainer" / "b.com" / "z.sol"));
  // Only in the app container: the main deletion of a missing folder still succeeds.
  EXPECT_TRUE(manager.RemoveSiteStoredData("b.com"));
  EXPECT_FALSE(fs::exists(stored / "#AppContainer" / "b.com"));
}
#endif

TEST(SiteSettings, HostileSiteNamesTouchNothingOutsideTheirOwnFolder) {
  TestProfile profile;
  const fs::path stored = profile.SharedObjects() / "QX7T2";
  // Another site's data and settings, folders a name could climb to, and canaries outside.
  WriteFileBytes(stored / "example.com" / "game.sol", "other site");
  WriteFileBytes(stored / "#AppContainer" / "example.com" / "game.sol", "other site");
  WriteFileBytes(profile.SharedObjects() / "evil" / "keep.sol", "shared objects");
  WriteFileBytes(profile.temp.path() / "outside" / "canary.txt", "canary");
  WriteFileBytes(profile.dataRoot / "evil" / "canary.txt", "canary");
  SMSettingsManager manager(*profile.platform);
  ASSERT_TRUE(manager.AddSite("example.com"));
  const auto before = FolderSnapshot(profile.temp.path());

  // Whether the name has a settings folder of its own ("#" and a device name is an ordinary
  // folder name); no name here may delete stored data.
  // clang-format off
  const std::vector<std::pair<std::string, bool>> cases = {
      {"", true}, {".", false}, {"..", false}, {"../evil", false}, {"..\\evil", false},
      {"../../../../../outside", false}, {"a/b", false}, {"a\\b", false}, {"/", false},
      {"\\", false}, {"example.com.", false}, {"example.com ", false}, {"example.com..", false},
      {"C:", false}, {"x:stream", false}, {"c:\\outside", false}, {"*", false},
      {"example.*", false}, {"exa?ple.com", false}, {"NUL", true}, {"con.txt", true},
      {"Com1", true}, {"lpt9.x", true}, {"EXAMPL~1.COM", false}, {"#AppContainer", true},
      {"#appcontainer", true}, {"new\nline", false}, {"quote\"", false}, {"a|b", false},
      {"<b>", false}, {std::string("example.com\0x", 13), false}};
  // clang-format on
  for (const auto& [name, ownSettings] : cases) {
    SCOPED_TRACE("site name: " + name);
    // The list of sites cannot hold an empty name: it would end the list in the master file.
    EXPECT_EQ(manager.AddSite(name), ownSettings && !name.empty());
    EXPECT_EQ(manager.EnsureSiteDefaults(name), ownSettings);
    EXPECT_EQ(manager.SetValue(name, SettingValue::Number("klimit", 1)), ownSettings);
    EXPECT_EQ(manager.GetSiteStoredBytes(manager.storedDataFolder(), name), 0u);
    // Refused deletions succeed with nothing deleted, so the site still leaves the list.
    EXPECT_TRUE(manager.RemoveSiteStoredData(name));
    EXPECT_TRUE(manager.RemoveSite(name, false));
    EXPECT_TRUE(manager.RemoveSite(name, true));
    EXPECT_TRUE(manager.DeleteSiteSettings(name, true));
    EXPECT_TRUE(manager.DeleteSiteSettings(name, false));
    EXPECT_EQ(FolderSnapshot(profile.temp.path()), before);
    EXPECT_EQ(KnownSiteNames(manager), std::vector<std::string>{"example.com"});
  }

  // Ordinary names that look unusual still work, and only on their own folders.
  for (const std::string name : {"sub.example.com", "xn--bcher-kva.example", "localhost",
                                 "#localWithNet", "a..b", "~user"}) {
    SCOPED_TRACE("site name: " + name);
    EXPECT_TRUE(manager.AddSite(name));
    WriteFileBytes(stored / PathFromUtf8(name) / "d.sol", "d");
    EXPECT_TRUE(manager.RemoveSite(name, true));
    EXPECT_FALSE(fs::exists(stored / PathFromUtf8(name)));
  }
  EXPECT_EQ(ReadFileBytes(stored / "example.com" / "game.sol"), "other site");
}
