// What the by-site, clear-data and trusted-locations dialogs read, write and delete.
#include <gtest/gtest.h>

#include "dialogs/clear_data_logic.h"
#include "dialogs/storage_size.h"
#include "dialogs/trusted_locations_logic.h"
#include "l10n/string_table.h"
#include "platform/private_data_folder.h"
#include "settings/settings_manager.h"
#include "settings/site_permissions.h"
#include "support/test_profile.h"

namespace fs = std::filesystem;

namespace {

const std::string kMaster = SMSettingsManager::MasterDomain();

struct DialogProfile : TestProfile {
  DialogProfile() {
    fs::create_directories(SettingsFolder());
    settings = std::make_unique<SMSettingsManager>(*platform);
  }
  std::unique_ptr<SMSettingsManager> settings;
};

}  // namespace

TEST(StorageSize, SingleFloatStepsDecideTheDigits) {
  struct Case {
    uint64_t bytes;
    int language;
    const char* text;
  };
  const Case cases[] = {
      {0, 0, "0 bytes"},
      {1023, 0, "1023 bytes"},
      {1024, 0, "1 kB"},
      {1535, 0, "1 kB"},
      {1048575, 0, "1023 kB"},
      {1048576, 0, "1.00 MB"},
      {1073741823, 0, "1024.00 MB"},
      {1073741824, 0, "1.00 GB"},
      {5368709120, 0, "5.00 GB"},
      // 16777217 is not a float: it rounds to 16777216, so the player shows exactly 16.00 MB.
      {16777217, 0, "16.00 MB"},
      {2048, 22, "2 KB"},
  };
  for (const Case& c : cases) {
    SMFixedLanguageStringTable strings(c.language);
    EXPECT_EQ(FormatStorageSize(strings, c.bytes), c.text) << c.bytes;
  }
}

TEST(SiteChoice, ReadingBackIsLopsided) {
  DialogProfile profile;
  SMSettingsManager& settings = *profile.settings;
  struct Case {
    const char* site;
    std::vector<SettingValue> stored;
    SiteChoice pair;
    SiteChoice storage;
  };
  const Case cases[] = {
      {"both.true",
       {SettingValue::Boolean("p2palways", true), SettingValue::Boolean("p2pallow", true),
        SettingValue::Number("klimit", 5000)},
       kChoiceAllow,
       kChoiceAllow},
      {"block",
       {SettingValue::Boolean("p2palways", true), SettingValue::Boolean("p2pallow", false),
        SettingValue::Number("klimit", -1)},
       kChoiceBlock,
       kChoiceBlock},
      {"always.only",
       {SettingValue::Boolean("p2palways", true), SettingValue::Number("klimit", 0)},
       kChoiceAsk,
       kChoiceAsk},
      {"not.always",
       {SettingValue::Boolean("p2palways", false), SettingValue::Boolean("p2pallow", true),
        SettingValue::Number("klimit", 100)},
       kChoiceAsk,
       kChoiceAllow},
      {"wrong.types",
       {SettingValue::Number("p2palways", 1), SettingValue::Boolean("p2pallow", true),
        SettingValue::String("klimit", "-1")},
       kChoiceAsk,
       kChoiceAllow},
      {"nothing", {}, kChoiceAsk, kChoiceAllow},
  };
  for (const Case& c : cases) {
    for (const SettingValue& value : c.stored) ASSERT_TRUE(settings.SetValue(c.site, value));
    EXPECT_EQ(ReadSiteChoice(settings, c.site, SitePermission::kPeerNetworking), c.pair) << c.site;
    EXPECT_EQ(ReadSiteChoice(settings, c.site, SitePermission::kStorage), c.storage) << c.site;
  }
}

TEST(SiteChoice, WritingStoresTheChoicesValues) {
  DialogProfile profile;
  SMSettingsManager& settings = *profile.settings;
  struct Case {
    SiteChoice choice;
    bool always;
    bool allow;
    double limit;
  };
  for (const Case& c : {Case{kChoiceAsk, false, false, 0}, Case{kChoiceAllow, true, true, 100},
                        Case{kChoiceBlock, true, false, -1}}) {
    ASSERT_TRUE(WriteSiteChoice(settings, "site.example", SitePermission::kCameraSecure, c.choice));
    ASSERT_TRUE(WriteSiteChoice(settings, "site.example", SitePermission::kStorage, c.choice));
    // Read back from the file, not the cache.
    SMSettingsManager reread(*profile.platform);
    EXPECT_EQ(reread.GetValue("site.example", "alwayssecure")->boolean(), c.always);
    EXPECT_EQ(reread.GetValue("site.example", "allowsecure")->boolean(), c.allow);
    EXPECT_EQ(reread.GetValue("site.example", "klimit")->number(), c.limit);
    EXPECT_EQ(ReadSiteChoice(reread, "site.example", SitePermission::kCameraSecure), c.choice);
  }
}

TEST(ClearData, DeletesOnlyWhatWasAskedAndNothingWithoutRecordedSites) {
  DialogProfile profile;
  SMSettingsManager& settings = *profile.settings;
  SMPlatformServices& platform = *profile.platform;
  SMPrivateDataFolder licences(platform.PrivateDataFolder(), &platform);
  const fs::path licenceFile = PathFromUtf8(platform.PrivateDataFolder()) / "l.bin";
  const fs::path assetFile = PathFromUtf8(platform.AssetCacheFolder()) / "a.bin";
  const fs::path siteData = profile.SharedObjects() / "X1" / "one.example" / "d.sol";
  WriteFileBytes(licenceFile, "l");
  WriteFileBytes(assetFile, "a");
  WriteFileBytes(siteData, "d");

  // Without a "domains" list (here a damaged one) nothing at all is touched.
  ASSERT_TRUE(settings.SetValue(kMaster, SettingValue::Number("domains", 1)));
  ClearDataOutcome outcome = ClearAllData(settings, platform, licences, {true, true});
  EXPECT_TRUE(outcome.nothingRecorded);
  EXPECT_TRUE(fs::exists(licenceFile) && fs::exists(assetFile) && fs::exists(siteData));

  ASSERT_TRUE(settings.SetValue(kMaster, SettingValue::Array("domains", SettingArray())));
  ASSERT_TRUE(settings.AddSite("one.example"));
  outcome = ClearAllData(settings, platform, licences, {true, false});
  EXPECT_FALSE(outcome.nothingRecorded || outcome.siteDataFailed || outcome.licenceFilesFailed);
  EXPECT_FALSE(fs::exists(siteData));
  EXPECT_FALSE(fs::exists(assetFile));
  EXPECT_FALSE(fs::exists(profile.SiteFile("one.example")));
  EXPECT_TRUE(fs::exists(licenceFile));
  EXPECT_TRUE(settings.GetKnownSites()->empty());

  outcome = ClearAllData(settings, platform, licences, {false, true});
  EXPECT_FALSE(outcome.licenceFilesFailed);
  EXPECT_FALSE(fs::exists(licenceFile));
}

TEST(TrustedLocations, AddRenameRemoveKeepOrder) {
  DialogProfile profile;
  SMSettingsManager& settings = *profile.settings;
  EXPECT_TRUE(TrustedLocations(settings).empty());
  EXPECT_EQ(AddTrustedLocation(settings, "C:\\a"), TrustedChange::kWritten);
  EXPECT_EQ(AddTrustedLocation(settings, "C:\\b"), TrustedChange::kWritten);
  EXPECT_EQ(AddTrustedLocation(settings, "C:\\c"), TrustedChange::kWritten);
  EXPECT_EQ(AddTrustedLocation(settings, "C:\\b"), TrustedChange::kUnchanged);
  EXPECT_EQ(RenameTrustedLocation(settings, "C:\\b", ""), TrustedChange::kUnchanged);
  EXPECT_EQ(RenameTrustedLocation(settings, "C:\\b", "C:\\b"), TrustedChange::kUnchanged);
  EXPECT_EQ(RenameTrustedLocation(settings, "C:\\a", "D:\\a"), TrustedChange::kWritten);
  EXPECT_EQ(RemoveTrustedLocations(settings, {"C:\\b"}), TrustedChange::kWritten);

  SMSettingsManager reread(*profile.platform);
  EXPECT_EQ(TrustedLocations(reread), (std::vector<std::string>{"D:\\a", "C:\\c"}));
  const SettingValue* stored = reread.GetValue(kMaster, "trustedPaths");
  ASSERT_NE(stored, nullptr);
  for (const SettingValue& element : stored->array()) {
    EXPECT_EQ(element.type(), kSettingBoolean);
    EXPECT_TRUE(element.boolean());
  }
}
