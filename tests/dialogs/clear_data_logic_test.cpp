// "Delete all site data": what each check box deletes, and the message for each failed group.
#include "dialogs/clear_data_logic.h"

#include <gtest/gtest.h>

#include "platform/private_data_folder.h"
#include "settings/settings_manager.h"
#include "support/scripted_prompts.h"
#include "support/test_profile.h"

namespace fs = std::filesystem;

TEST(ClearData, CheckBoxesDecideWhatIsDeletedAndEachFailedGroupIsReported) {
  enum Lock { kNoLock, kLockSiteData, kLockAssetCache };
  enum Part { kSettings, kSiteData, kAssetCache, kLicences };
  struct Case {
    int siteDataBox = kCheckChecked;
    int licenceBox = kCheckChecked;
    bool listed = true;  // "domains" holds the list of sites
    Lock lock = kNoLock;
    std::vector<Part> gone;
    std::vector<TextId> errors = {};
  };
  const Case cases[] = {
      {.licenceBox = kCheckUnchecked, .gone = {kSettings, kSiteData, kAssetCache}},
      {.siteDataBox = kCheckUnchecked, .gone = {kLicences}},
      {.siteDataBox = kCheckIndeterminate, .licenceBox = 7, .gone = {}},
      {.listed = false, .gone = {}},
      {.lock = kLockSiteData,
       .gone = {kSettings, kAssetCache, kLicences},
       .errors = {TextId::kSiteDataNotDeleted}},
      {.lock = kLockAssetCache,
       .gone = {kSettings, kSiteData, kLicences},
       .errors = {TextId::kSiteDataNotDeleted}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE("row " + std::to_string(&c - cases));
    TestProfile profile;
    LockingPlatform platform(profile.system);
    fs::create_directories(profile.SettingsFolder());
    SMSettingsManager settings(platform);
    ASSERT_TRUE(settings.AddSite("one.example"));
    if (!c.listed) {
      // What the player finds when the list is missing or damaged.
      ASSERT_TRUE(settings.SetValue(kMasterDomain, SettingValue::Number("domains", 1)));
    }
    const fs::path siteData = profile.SharedObjects() / "X1" / "one.example" / "d.sol";
    const fs::path assetFile = PathFromUtf8(platform.AssetCacheFolder()) / "a.bin";
    const fs::path licenceFile = PathFromUtf8(platform.PrivateDataFolder()) / "l.bin";
    for (const fs::path& file : {siteData, assetFile, licenceFile}) WriteFileBytes(file, "x");
    const std::string locked[] = {"", PathToUtf8(siteData), PathToUtf8(assetFile)};
    platform.locked = locked[c.lock];

    SMPrivateDataFolder licences(platform.PrivateDataFolder(), &platform);
    ScriptedPrompts prompts;
    ClearAllData(settings, platform, licences, prompts,
                 RequestFromCheckStates(c.siteDataBox, c.licenceBox));

    std::vector<Part> gone;
    const fs::path parts[] = {profile.SiteFile("one.example"), siteData, assetFile, licenceFile};
    for (Part part : {kSettings, kSiteData, kAssetCache, kLicences}) {
      if (!fs::exists(parts[part])) gone.push_back(part);
    }
    EXPECT_EQ(gone, c.gone);
    std::vector<std::vector<TextId>> expectedErrors;
    for (TextId textId : c.errors) {
      expectedErrors.push_back({textId, TextId::kUnableToDeleteCaption});
    }
    EXPECT_EQ(prompts.errors, expectedErrors);
    // The global settings outlive every deletion.
    SMSettingsManager reread(platform);
    EXPECT_NE(reread.GetValue(kMasterDomain, "defaultklimit"), nullptr);
  }
}
