#include "settings/settings_manager.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include "support/settings_bytes.h"
#include "support/test_profile.h"

using namespace settings_bytes;
namespace fs = std::filesystem;

namespace {

// The master file of a first run: the ten global defaults and an empty "domains", in the
// player's table order (buckets 1, 1, 3, 4, 4, 6, 8, 10, 11, 11, 15; the later-added name of a
// bucket first).
std::string FirstRunMasterFile() {
  return Stream(
      Body("settings",
           NumberPair("autoUpdateInterval", 14) + BooleanPair("crossdomainAllow", false) +
               BooleanPair("crossdomainAlways", true) + BooleanPair("autoUpdateDisabled", false) +
               BooleanPair("disallowP2PUplink", false) + BooleanPair("defaultalways", false) +
               NumberPair("secureCrossDomainCacheSize", -1) +
               BooleanPair("allowThirdPartyLSOAccess", true) + ArrayPair("domains", "") +
               ArrayPair("trustedPaths", "") + NumberPair("defaultklimit", 100)));
}

}  // namespace

TEST(SettingsManager, AMissingCorruptOrEmptyMasterIsReplacedByTheDefaults) {
  const std::string pathological =
      "SMSettingsManager: Pathological error when reading master settings.sol file.\n";
  struct Case {
    const char* what;
    std::optional<std::string> bytes;
    std::string diagnostics;
  };
  const Case cases[] = {
      {"first run", std::nullopt, ""},
      {"not a settings file", "garbage!", pathological},
      {"a bad end byte",
       Stream(Body("settings", NumberPair("defaultklimit", 5).substr(0, 24) + Byte(1))),
       pathological},
      {"empty", "",
       "SMSettingsReader: ReadU16() attempted to read beyond end-of-stream.\n" + pathological},
  };
  for (const Case& testCase : cases) {
    SCOPED_TRACE(testCase.what);
    TestProfile profile;
    if (testCase.bytes) WriteFileBytes(profile.MasterFile(), *testCase.bytes);
    testing::internal::CaptureStderr();
    SMSettingsManager manager(*profile.platform);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), testCase.diagnostics);
    EXPECT_EQ(ReadFileBytes(profile.MasterFile()), FirstRunMasterFile());
    EXPECT_EQ(manager.settingsFolder(), PathToUtf8(profile.SettingsFolder()));
    EXPECT_EQ(manager.storedDataFolder(), PathToUtf8(profile.SharedObjects()));
  }
}

TEST(SettingsManager, ExistingMasterKeepsItsValuesAndEveryChangeIsWrittenAtOnce) {
  TestProfile profile;
  WriteFileBytes(profile.MasterFile(),
                 Stream(Body("settings", NumberPair("defaultklimit", 500) +
                                             StringPair("crossdomainAllow", "maybe") +
                                             NumberPair("playerOwnKey", 3))));
  SMSettingsManager manager(*profile.platform);
  // A file where the settings folder should be: the write fails, the value stays in memory.
  fs::remove_all(profile.SettingsFolder());
  WriteFileBytes(profile.SettingsFolder(), "in the way");
  EXPECT_FALSE(manager.SetValue(kMasterDomain, SettingValue::Boolean("disallowP2PUplink", true)));
  EXPECT_TRUE(manager.GetValue(kMasterDomain, "disallowP2PUplink")->boolean());
  // Unless the former value is to come back: a replaced key gets it, a new key goes again.
  EXPECT_FALSE(manager.SetValueOrRestore(kMasterDomain, SettingValue::Number("defaultklimit", 7)));
  EXPECT_EQ(manager.GetValue(kMasterDomain, "defaultklimit")->number(), 500);
  EXPECT_FALSE(manager.SetValueOrRestore(kMasterDomain, SettingValue::Number("newKey", 1)));
  EXPECT_EQ(manager.GetValue(kMasterDomain, "newKey"), nullptr);
  fs::remove(profile.SettingsFolder());
  EXPECT_TRUE(manager.SetValue(kMasterDomain, SettingValue::Number("autoUpdateInterval", 7)));
  // The player's own key and the value of the wrong type are kept, the missing defaults added.
  SMSettingsManager reread(*profile.platform);
  EXPECT_EQ(reread.GetNames(kMasterDomain).size(), 12u);
  EXPECT_EQ(reread.GetValue(kMasterDomain, "defaultklimit")->number(), 500);
  EXPECT_EQ(reread.GetValue(kMasterDomain, "playerOwnKey")->number(), 3);
  EXPECT_EQ(reread.GetValue(kMasterDomain, "crossdomainAllow")->text(), "maybe");
  EXPECT_TRUE(reread.GetValue(kMasterDomain, "disallowP2PUplink")->boolean());
  EXPECT_EQ(reread.GetValue(kMasterDomain, "autoUpdateInterval")->number(), 7);
}
