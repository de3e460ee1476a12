// The trusted locations: the list as the dialog edits it, and the pickers' buffers.
#include "dialogs/trusted_locations_logic.h"

#include <gtest/gtest.h>

#include "settings/settings_manager.h"
#include "support/test_profile.h"

namespace fs = std::filesystem;

TEST(TrustedLocations, AddRenameRemoveKeepOrderAndUniqueNames) {
  SitesProfile profile;
  SMSettingsManager settings(*profile.platform);
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

// Another program listed a path more than once: each selected row takes one element with it.
TEST(TrustedLocations, RemoveTakesOneElementPerSelectedRow) {
  using Names = std::vector<std::string>;
  const struct {
    Names selected, kept;
  } cases[] = {
      {{"a"}, {"b", "a", "c", "a"}},
      {{"a", "a"}, {"b", "c", "a"}},
      {{"c", "a", "a", "a"}, {"b"}},
  };
  for (const auto& c : cases) {
    SitesProfile profile;
    SMSettingsManager settings(*profile.platform);
    SettingArray listed;
    for (const char* name : {"a", "b", "a", "c", "a"}) {
      listed.Append(SettingValue::Boolean(name, true));
    }
    ASSERT_TRUE(settings.SetValue(kMasterDomain, SettingValue::Array("trustedPaths", listed)));
    EXPECT_EQ(RemoveTrustedLocations(settings, c.selected), TrustedChange::kWritten);
    SMSettingsManager reread(*profile.platform);
    EXPECT_EQ(TrustedLocations(reread), c.kept) << c.selected.size();
  }
}

TEST(TrustedLocations, FailedWritesLeaveTheSettingAsItIs) {
  SitesProfile profile;
  SMSettingsManager settings(*profile.platform);
  ASSERT_EQ(AddTrustedLocation(settings, "C:\\a"), TrustedChange::kWritten);
  ASSERT_EQ(AddTrustedLocation(settings, "C:\\b"), TrustedChange::kWritten);
  // A file where the settings folder should be: every write fails.
  profile.BreakSettingsFolder();
  EXPECT_EQ(AddTrustedLocation(settings, "C:\\c"), TrustedChange::kWriteFailed);
  EXPECT_EQ(RenameTrustedLocation(settings, "C:\\a", "C:\\z"), TrustedChange::kWriteFailed);
  EXPECT_EQ(RemoveTrustedLocations(settings, {"C:\\a"}), TrustedChange::kWriteFailed);
  EXPECT_EQ(TrustedLocations(settings), (std::vector<std::string>{"C:\\a", "C:\\b"}));

  // The next write of another global setting must not store the failed changes after all.
  fs::remove(profile.SettingsFolder());
  fs::create_directories(profile.SettingsFolder());
  ASSERT_TRUE(settings.SetValue(kMasterDomain, SettingValue::Number("defaultklimit", 10)));
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
    SitesProfile profile;
    ASSERT_TRUE(SMSettingsManager(*profile.platform).SetValue(kMasterDomain, stored));
    SMSettingsManager opened(*profile.platform);
    const std::string before = ReadFileBytes(profile.MasterFile());
    EXPECT_EQ(TrustedLocations(opened), listed);
    EXPECT_EQ(ReadFileBytes(profile.MasterFile()), before);
  }

  // Editing one element of such a list keeps every other element, and its own value, as it was.
  SitesProfile profile;
  SMSettingsManager settings(*profile.platform);
  ASSERT_TRUE(settings.SetValue(kMasterDomain, SettingValue::Array("trustedPaths", mixed)));
  ASSERT_EQ(RenameTrustedLocation(settings, "C:\\number", "C:\\renamed"), TrustedChange::kWritten);
  ASSERT_EQ(RemoveTrustedLocations(settings, {"C:\\yes"}), TrustedChange::kWritten);
  SMSettingsManager reread(*profile.platform);
  const SettingArray& stored = reread.GetValue(kMasterDomain, "trustedPaths")->array();
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
