// What the by-site, clear-data and trusted-locations dialogs read, write and delete.
#include <gtest/gtest.h>

#include "dialogs/clear_data_logic.h"
#include "dialogs/storage_size.h"
#include "dialogs/trusted_locations_logic.h"
#include "l10n/string_table.h"
#include "platform/private_data_folder.h"
#include "settings/settings_manager.h"
#include "settings/site_permissions.h"
#include "support/scripted_prompts.h"
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
      {1023, 0, "1023 bytes"},
      {1024, 0, "1 kB"},
      {1048575, 0, "1023 kB"},
      {1048576, 0, "1.00 MB"},
      {1073741823, 0, "1024.00 MB"},
      {1073741824, 0, "1.00 GB"},
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
    SiteChoice pair;
    SiteChoice storage;
    std::vector<SettingValue> stored;
  };
  const auto B = &SettingValue::Boolean;
  const auto N = &SettingValue::Number;
  const Case cases[] = {
      {kChoiceAllow, kChoiceAllow, {B("p2palways", true), B("p2pallow", true), N("klimit", -2)}},
      {kChoiceBlock, kChoiceBlock, {B("p2palways", true), B("p2pallow", false), N("klimit", -1)}},
      {kChoiceAsk, kChoiceAsk, {B("p2palways", true), N("klimit", -0.0)}},
      {kChoiceAsk, kChoiceAllow, {B("p2palways", false), B("p2pallow", true), N("klimit", 100)}},
      {kChoiceAsk, kChoiceAllow, {N("p2palways", 1), B("p2pallow", true)}},
      {kChoiceAsk, kChoiceAllow, {SettingValue::String("klimit", "-1")}},
  };
  int row = 0;
  for (const Case& c : cases) {
    const std::string site = "site" + std::to_string(row++);
    for (const SettingValue& value : c.stored) ASSERT_TRUE(settings.SetValue(site, value));
    EXPECT_EQ(ReadSiteChoice(settings, site, SitePermission::kPeerNetworking), c.pair) << site;
    EXPECT_EQ(ReadSiteChoice(settings, site, SitePermission::kStorage), c.storage) << site;
  }
}

TEST(ClearData, CheckBoxesDecideWhatIsDeletedAndEachFailedGroupIsReported) {
  enum Lock { kNoLock, kLockSiteData, kLockAssetCache };
  struct Case {
    const char* name;
    bool domainsIsArray;
    int siteDataState;
    int licenceState;
    Lock lock;
    bool siteSettingsGone;
    bool siteDataGone;
    bool assetCacheGone;
    bool licencesGone;
    std::vector<TextId> errors;
  };
  const Case cases[] = {
      {"site data only", true, 1, 0, kNoLock, true, true, true, false, {}},
      {"licences only", true, 0, 1, kNoLock, false, false, false, true, {}},
      {"indeterminate, out of range", true, 2, 7, kNoLock, false, false, false, false, {}},
      {"no list of sites", false, 1, 1, kNoLock, false, false, false, false, {}},
      {"locked site data",
       true,
       1,
       1,
       kLockSiteData,
       true,
       false,
       true,
       true,
       {TextId::kSiteDataNotDeleted}},
      {"locked asset cache",
       true,
       1,
       1,
       kLockAssetCache,
       true,
       true,
       false,
       true,
       {TextId::kSiteDataNotDeleted}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TestProfile profile;
    LockingPlatform platform(profile.system);
    fs::create_directories(profile.SettingsFolder());
    SMSettingsManager settings(platform);
    ASSERT_TRUE(settings.AddSite("one.example"));
    if (!c.domainsIsArray) {
      // What the player finds when the list is missing or damaged.
      ASSERT_TRUE(settings.SetValue(kMaster, SettingValue::Number("domains", 1)));
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
                 RequestFromCheckStates(c.siteDataState, c.licenceState));

    EXPECT_EQ(!fs::exists(siteData), c.siteDataGone);
    EXPECT_EQ(!fs::exists(profile.SiteFile("one.example")), c.siteSettingsGone);
    EXPECT_EQ(!fs::exists(assetFile), c.assetCacheGone);
    EXPECT_EQ(!fs::exists(licenceFile), c.licencesGone);
    std::vector<std::vector<TextId>> expectedErrors;
    for (TextId textId : c.errors)
      expectedErrors.push_back({textId, TextId::kUnableToDeleteCaption});
    EXPECT_EQ(prompts.errors, expectedErrors);
    // The global settings outlive every deletion.
    SMSettingsManager reread(platform);
    EXPECT_NE(reread.GetValue(kMaster, "defaultklimit"), nullptr);
  }
}

TEST(ClearData, InitialCheckStatesAreClamped) {
  const std::pair<int, int> cases[] = {{-1, 0}, {1, 1}, {2, 2}, {3, 0}};
  for (auto [stored, shown] : cases) EXPECT_EQ(ClampCheckState(stored), shown) << stored;
}

TEST(TrustedLocations, AddRenameRemoveKeepOrderAndUniqueNames) {
  DialogProfile profile;
  SMSettingsManager& settings = *profile.settings;
  EXPECT_TRUE(TrustedLocations(settings).empty());
  const std::string a = "C:\\a", b = "C:\\b", c = "C:\\c";
  const std::string accented = "D:\\Entw\xC3\xBC rfe\\\xE6\xB8\xAC\xE8\xA9\xA6.vtm";
  // One operation on the trusted locations and the list it must leave, on disk and in memory.
  struct S {
    enum Kind { kAdd, kRename, kRemove } kind;
    std::vector<std::string> arguments;
    TrustedChange change;
    std::vector<std::string> listed;
  };
  const S steps[] = {
      {S::kAdd, {a}, TrustedChange::kWritten, {a}},
      {S::kAdd, {b}, TrustedChange::kWritten, {a, b}},
      {S::kAdd, {c}, TrustedChange::kWritten, {a, b, c}},
      {S::kAdd, {b}, TrustedChange::kAlreadyListed, {a, b, c}},
      {S::kAdd, {""}, TrustedChange::kUnchanged, {a, b, c}},
      {S::kRename, {b, ""}, TrustedChange::kUnchanged, {a, b, c}},
      {S::kRename, {b, b}, TrustedChange::kUnchanged, {a, b, c}},
      {S::kRename, {b, c}, TrustedChange::kAlreadyListed, {a, b, c}},
      {S::kRename, {"C:\\gone", "C:\\new"}, TrustedChange::kUnchanged, {a, b, c}},
      {S::kRename, {a, accented}, TrustedChange::kWritten, {accented, b, c}},
      {S::kRemove, {accented, c}, TrustedChange::kWritten, {b}},
      {S::kRemove, {}, TrustedChange::kUnchanged, {b}},
  };
  for (const S& step : steps) {
    SCOPED_TRACE(step.arguments.empty() ? "" : step.arguments[0]);
    const std::vector<std::string>& arguments = step.arguments;
    const TrustedChange change = step.kind == S::kAdd ? AddTrustedLocation(settings, arguments[0])
                                 : step.kind == S::kRename
                                     ? RenameTrustedLocation(settings, arguments[0], arguments[1])
                                     : RemoveTrustedLocations(settings, arguments);
    EXPECT_EQ(change, step.change);
    EXPECT_EQ(TrustedLocations(settings), step.listed);
    SMSettingsManager reread(*profile.platform);
    EXPECT_EQ(TrustedLocations(reread), step.listed);
  }
}

TEST(TrustedLocations, FailedWritesLeaveTheSettingAsItIs) {
  DialogProfile profile;
  SMSettingsManager& settings = *profile.settings;
  ASSERT_EQ(AddTrustedLocation(settings, "C:\\a"), TrustedChange::kWritten);
  ASSERT_EQ(AddTrustedLocation(settings, "C:\\b"), TrustedChange::kWritten);
  // A file where the settings folder should be: every write fails.
  fs::remove_all(profile.SettingsFolder());
  WriteFileBytes(profile.SettingsFolder(), "not a folder");
  EXPECT_EQ(AddTrustedLocation(settings, "C:\\c"), TrustedChange::kWriteFailed);
  EXPECT_EQ(RenameTrustedLocation(settings, "C:\\a", "C:\\z"), TrustedChange::kWriteFailed);
  EXPECT_EQ(RemoveTrustedLocations(settings, {"C:\\a"}), TrustedChange::kWriteFailed);
  EXPECT_EQ(TrustedLocations(settings), (std::vector<std::string>{"C:\\a", "C:\\b"}));

  // The next write of another global setting must not store the failed changes after all.
  fs::remove(profile.SettingsFolder());
  fs::create_directories(profile.SettingsFolder());
  ASSERT_TRUE(settings.SetValue(kMaster, SettingValue::Number("defaultklimit", 10)));
  SMSettingsManager reread(*profile.platform);
  EXPECT_EQ(TrustedLocations(reread), (std::vector<std::string>{"C:\\a", "C:\\b"}));
}

TEST(TrustedLocations, OddValuesAreListedAsFarAsPossibleAndNotRewrittenByReading) {
  SettingArray mixed;
  mixed.Append(SettingValue::Boolean("C:\\yes", true));
  mixed.Append(SettingValue::Number("C:\\number", 3));
  mixed.Append(SettingValue::Boolean("C:\\no", false));
  const std::pair<SettingValue, std::vector<std::string>> cases[] = {
      {SettingValue::String("trustedPaths", "C:\\text"), {}},
      {SettingValue::Array("trustedPaths", mixed), {"C:\\yes", "C:\\number", "C:\\no"}},
  };
  for (const auto& [stored, listed] : cases) {
    DialogProfile profile;
    ASSERT_TRUE(profile.settings->SetValue(kMaster, stored));
    SMSettingsManager opened(*profile.platform);
    const std::string before = ReadFileBytes(profile.MasterFile());
    EXPECT_EQ(TrustedLocations(opened), listed);
    EXPECT_EQ(ReadFileBytes(profile.MasterFile()), before);
  }

  // Editing one element of such a list keeps every other element, and its own value, as it was.
  DialogProfile profile;
  ASSERT_TRUE(profile.settings->SetValue(kMaster, SettingValue::Array("trustedPaths", mixed)));
  ASSERT_EQ(RenameTrustedLocation(*profile.settings, "C:\\number", "C:\\renamed"),
            TrustedChange::kWritten);
  ASSERT_EQ(RemoveTrustedLocations(*profile.settings, {"C:\\yes"}), TrustedChange::kWritten);
  SMSettingsManager reread(*profile.platform);
  const SettingArray& stored = reread.GetValue(kMaster, "trustedPaths")->array();
  ASSERT_EQ(stored.size(), 2u);
  EXPECT_TRUE(IdenticalValues(stored[0], SettingValue::Number("C:\\renamed", 3)));
  EXPECT_TRUE(IdenticalValues(stored[1], SettingValue::Boolean("C:\\no", false)));
}

TEST(TrustedLocations, PickersHandBackThePathUpToItsTerminator) {
  EXPECT_EQ(PickerFilter(L"VTM Files (*.vtm)", L"*.vtm"),
            std::wstring(L"VTM Files (*.vtm)\0*.vtm\0\0", 25));
  // A shorter path picked over a longer one leaves the old tail behind its terminator.
  const wchar_t picked[] = L"C:\\dev\\a.vtm\0C:\\stale\\longer.vtm";
  EXPECT_EQ(PickedPathText(picked, std::size(picked)), L"C:\\dev\\a.vtm");
  EXPECT_EQ(PickedPathText(L"C:\\xyz", 4), L"C:\\x");  // no terminator inside the buffer
}
