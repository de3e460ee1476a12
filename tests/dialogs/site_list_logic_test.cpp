// The rows of the settings-by-site lists: order, texts, the common choice, apply, add, remove.
#include "dialogs/site_list_logic.h"

#include <gtest/gtest.h>

#include <cctype>

#include "l10n/string_table.h"
#ifdef _WIN32
#include "platform/win32/win32_system.h"
#endif
#include "settings/settings_manager.h"
#include "support/fake_system.h"
#include "support/native_platform.h"
#include "support/scripted_prompts.h"
#include "support/test_profile.h"

namespace fs = std::filesystem;

namespace {

// Case-blind and blind to '-', so that the tests see the model order by the key and not by
// the bytes, and meet names whose keys are equal.
std::string LowerKey(const std::string& name) {
  std::string key;
  for (char c : name) {
    if (c != '-') key += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return key;
}

// A profile whose sites are listed in this order and whose stored data lies in one folder.
struct ListProfile : SitesProfile {
  explicit ListProfile(const std::vector<std::string>& sites) : SitesProfile(sites) {
    fs::create_directories(SharedObjects() / "X1");
    Reopen();
  }
  void Reopen() { settings = std::make_unique<SMSettingsManager>(*platform); }
  fs::path DataFile(const std::string& site) const { return SharedObjects() / "X1" / site / "d"; }
  std::vector<std::string> Rows(SiteListModel& model, int column = 0) {
    std::vector<std::string> texts;
    for (size_t row = 0; row < model.RowCount(); ++row)
      texts.push_back(model.CellText(row, column));
    return texts;
  }
  std::unique_ptr<SMSettingsManager> settings;
  SMFixedLanguageStringTable strings{0};
};

using Texts = std::vector<std::string>;

}  // namespace

TEST(SiteListModel, FillsInListViewOrderWithWordsAndSizes) {
  ListProfile profile({"b.org", "ab.com", "c.net", "a-b.com", "local"});
  // A damaged file reads as an empty one: the words for missing values.
  WriteFileBytes(profile.SiteFile("b.org"), "not a settings file");
  WriteFileBytes(profile.DataFile("b.org"), std::string(2048, 'x'));
  WriteFileBytes(profile.SharedObjects() / "X1" / "localhost" / "d", std::string(900, 'x'));
  WriteFileBytes(profile.SharedObjects() / "X1" / "#localWithNet" / "d", std::string(100, 'x'));
  WriteFileBytes(profile.SharedObjects() / "X1" / "local" / "d", std::string(7, 'x'));
  profile.Reopen();
  SMSettingsManager& settings = *profile.settings;
  ASSERT_TRUE(settings.SetValue("ab.com", SettingValue::Number("klimit", -1)));
  ASSERT_TRUE(settings.SetValue("c.net", SettingValue::Number("klimit", 0)));
  // An empty name is not listed; a duplicate is listed twice; a name the store cannot turn into
  // a path is listed with the words for missing values.
  SettingArray domains = *settings.GetKnownSites();
  for (const char* name : {"", "c.net", "a/b"}) domains.Append(SettingValue::Boolean(name, true));
  ASSERT_TRUE(settings.SetValue(kMasterDomain, SettingValue::Array("domains", domains)));

  SiteListModel model(SiteListKind::kStorage, settings, profile.strings, LowerKey);
  model.Fill();
  // Equal keys: the site listed last comes first, as a sorted list view inserts it.
  EXPECT_EQ(profile.Rows(model),
            (Texts{"a/b", "a-b.com", "ab.com", "b.org", "c.net", "c.net", "local"}));
  EXPECT_EQ(profile.Rows(model, 1),
            (Texts{"0 bytes", "0 bytes", "0 bytes", "2 kB", "0 bytes", "0 bytes", "1000 bytes"}));
  EXPECT_EQ(profile.Rows(model, 2),
            (Texts{"Allow", "Allow", "Block", "Allow", "Ask me", "Ask me", "Allow"}));

  SiteListModel peers(SiteListKind::kPeerNetworking, settings, profile.strings, LowerKey);
  peers.Fill();
  EXPECT_EQ(profile.Rows(peers, 1), (Texts(7, "Ask me")));
}

TEST(SiteListModel, CommonChoiceOfTheSelectedRows) {
  ListProfile profile({"s1", "s2", "s3"});
  SMSettingsManager& settings = *profile.settings;
  const auto B = &SettingValue::Boolean;
  const std::pair<const char*, std::vector<SettingValue>> stored[] = {
      {"s1",
       {B("alwayssecure", true), B("allowsecure", true), B("always", true), B("allow", false)}},
      {"s2", {B("alwayssecure", true), B("allowsecure", true)}},
      {"s3", {B("alwayssecure", true), B("always", false)}},
  };
  for (const auto& [site, values] : stored) {
    for (const SettingValue& value : values) ASSERT_TRUE(settings.SetValue(site, value));
  }
  SiteListModel model(SiteListKind::kCameraMic, settings, profile.strings, LowerKey);
  model.Fill();
  // The selected rows and the choices shown for them (HTTPS, other).
  const std::pair<std::vector<size_t>, std::vector<SiteChoice>> cases[] = {
      {{}, {kChoiceNone, kChoiceNone}},
      {{0}, {kChoiceAllow, kChoiceBlock}},
      {{0, 1}, {kChoiceAllow, kChoiceNone}},
      {{1, 2}, {kChoiceNone, kChoiceAsk}},
  };
  for (const auto& [selected, shown] : cases) {
    EXPECT_EQ(model.CommonChoices(selected), shown) << selected.size();
  }
  // Choosing Ask for a mixed selection asks again everywhere.
  model.ApplyChoice(1, kChoiceAsk, {0, 1, 2});
  EXPECT_EQ(model.CommonChoices({0, 1, 2}), (std::vector<SiteChoice>{kChoiceNone, kChoiceAsk}));
  EXPECT_EQ(profile.Rows(model, 2), (Texts{"Ask me", "Ask me", "Ask me"}));
}

TEST(SiteListModel, ApplyWritesEverySelectedRowAndBlockDeletesStoredData) {
  ListProfile profile({"a.com", "b.com", "c.com", "x.com"});
  WriteFileBytes(profile.DataFile("a.com"), std::string(3000, 'x'));
  WriteFileBytes(profile.DataFile("b.com"), std::string(10, 'x'));
  profile.Reopen();
  SiteListModel model(SiteListKind::kStorage, *profile.settings, profile.strings, LowerKey);
  model.Fill();
  // x.com can no longer be written: its settings folder became a file.
  fs::remove_all(profile.SiteFile("x.com").parent_path());
  WriteFileBytes(profile.SiteFile("x.com").parent_path(), "");

  model.ApplyChoice(0, kChoiceBlock, {0, 2, 3});
  EXPECT_EQ(profile.Rows(model, 2), (Texts{"Block", "Allow", "Block", "Allow"}));
  EXPECT_EQ(profile.Rows(model, 1)[0], "0 bytes");
  EXPECT_FALSE(fs::exists(profile.DataFile("a.com")));
  EXPECT_TRUE(fs::exists(profile.DataFile("b.com")));
  SMSettingsManager reread(*profile.platform);
  for (const auto& [site, limit] :
       {std::pair{"a.com", -1.0}, std::pair{"b.com", 100.0}, std::pair{"c.com", -1.0}}) {
    EXPECT_EQ(reread.GetValueAs<double>(site, "klimit"), limit) << site;
  }
}

TEST(SiteListModel, AddPutsTheSiteInItsSortedPlace) {
  ListProfile profile({"b.com", "d.com"});
  ScriptedPrompts prompts;
  SiteListModel model(SiteListKind::kCameraMic, *profile.settings, profile.strings, LowerKey);
  model.Fill();
  struct Case {
    std::optional<SMAddSiteAnswer> answer;
    SiteListModel::AddOutcome outcome;
    Texts rows;
  };
  const Texts all = {"b.com", "C.com", "d.com"};
  const Case cases[] = {
      {std::nullopt, {false, std::nullopt}, {"b.com", "d.com"}},
      {SMAddSiteAnswer{"C.com", kChoiceBlock}, {true, 1}, all},
      // Already listed: its choice changes, no second row.
      {SMAddSiteAnswer{"b.com", kChoiceAllow}, {true, 0}, all},
      // Names the store cannot keep (its table is with it) and the global settings are not added.
      {SMAddSiteAnswer{"a/b", kChoiceAllow}, {true, std::nullopt}, all},
      {SMAddSiteAnswer{kMasterDomain, kChoiceAllow}, {true, std::nullopt}, all},
  };
  for (const Case& c : cases) {
    prompts.addSiteAnswers.push_back(c.answer);
    SiteListModel::AddOutcome outcome = model.AddFromUser(prompts);
    const std::string what = c.answer ? c.answer->site : "cancelled";
    EXPECT_EQ(outcome.confirmed, c.outcome.confirmed) << what;
    EXPECT_EQ(outcome.row, c.outcome.row) << what;
    EXPECT_EQ(profile.Rows(model), c.rows) << what;
  }
  EXPECT_EQ(KnownSiteNames(*profile.settings), (Texts{"b.com", "d.com", "C.com"}));
  // Both pairs of the camera dialog take the choice.
  SMSettingsManager reread(*profile.platform);
  for (SitePermission permission : {SitePermission::kCameraOther, SitePermission::kCameraSecure}) {
    EXPECT_EQ(ReadSiteChoice(reread, "C.com", permission), kChoiceBlock);
    EXPECT_EQ(ReadSiteChoice(reread, "b.com", permission), kChoiceAllow);
  }
  EXPECT_EQ(profile.Rows(model, 1)[0], "Allow");
}

// The list shows what a fresh fill would: a site that only memory lists (its master write
// failed) has its row, and every row of a name listed twice shows the change.
TEST(SiteListModel, AddAndApplyShowWhatTheStoreHolds) {
  ListProfile profile({"b.com", "d.com"});
  SettingArray domains = *profile.settings->GetKnownSites();
  domains.Append(SettingValue::Boolean("b.com", true));
  ASSERT_TRUE(profile.settings->SetValue(kMasterDomain, SettingValue::Array("domains", domains)));
  LockingPlatform locking(profile.system);
  locking.locked = PathToUtf8(profile.MasterFile());
  SMSettingsManager settings(locking);
  SiteListModel model(SiteListKind::kStorage, settings, profile.strings, LowerKey);
  model.Fill();
  ASSERT_EQ(profile.Rows(model), (Texts{"b.com", "b.com", "d.com"}));

  EXPECT_EQ(model.AddSite("c.com", kChoiceBlock), std::optional<size_t>(2));
  EXPECT_EQ(profile.Rows(model), (Texts{"b.com", "b.com", "c.com", "d.com"}));
  // Its choice is written only once the site is listed on disk.
  EXPECT_EQ(profile.Rows(model, 2)[2], "Allow");
  model.ApplyChoice(0, kChoiceBlock, {1});
  EXPECT_EQ(profile.Rows(model, 2), (Texts{"Block", "Block", "Allow", "Allow"}));
  EXPECT_EQ(model.AddSite("b.com", kChoiceAsk), std::optional<size_t>(0));
  EXPECT_EQ(profile.Rows(model, 2), (Texts{"Ask me", "Ask me", "Allow", "Allow"}));
}

TEST(SiteListModel, RemoveSkipsNoRowAndKeepsWhatCannotGo) {
  ListProfile profile({"a.com", "b.com", "c.com", "d.com", "e.com"});
  for (const char* site : {"a.com", "b.com", "e.com"}) {
    WriteFileBytes(profile.DataFile(site), "x");
  }
  profile.Reopen();
  SiteListModel model(SiteListKind::kPeerNetworking, *profile.settings, profile.strings, LowerKey);
  model.Fill();
  // d.com leaves "domains" behind the list's back: its row stays and stays selected.
  SettingArray domains;
  for (const char* site : {"a.com", "b.com", "c.com", "e.com"}) {
    domains.Append(SettingValue::Boolean(site, true));
  }
  ASSERT_TRUE(profile.settings->SetValue(kMasterDomain, SettingValue::Array("domains", domains)));
  EXPECT_EQ(model.RemoveRows({0, 1, 3, 4}), (std::vector<size_t>{1}));
  EXPECT_EQ(profile.Rows(model), (Texts{"c.com", "d.com"}));
  for (const char* site : {"a.com", "b.com", "e.com"}) {
    EXPECT_FALSE(fs::exists(profile.DataFile(site))) << site;
    EXPECT_FALSE(fs::exists(profile.SiteFile(site))) << site;
  }
  EXPECT_EQ(KnownSiteNames(*profile.settings), (Texts{"c.com"}));
}

TEST(FindSiteRow, FindsAsAListViewsTypeAhead) {
  // Under Windows the system's own case folding, as the list view's search uses it.
#ifdef _WIN32
  Win32System system;
#else
  FakeSystem system;
#endif
  const auto fold = [&](const std::string& text) { return system.FoldCase(text); };
  const Texts names{"alpha.com", "Beta.org", "beta.net", "gamma.com"};
  struct Row {
    const char* text;
    bool wholeName;
    bool wrap;
    size_t start;
    std::optional<size_t> found;
  };
  const Row rows[] = {
      {.text = "b", .wholeName = false, .wrap = true, .start = 0, .found = 1},
      {.text = "BE", .wholeName = false, .wrap = true, .start = 2, .found = 2},
      {.text = "a", .wholeName = false, .wrap = true, .start = 1, .found = 0},
      {.text = "a", .wholeName = false, .wrap = false, .start = 1, .found = std::nullopt},
      {.text = "alpha", .wholeName = false, .wrap = true, .start = 9, .found = 0},
      {.text = "BETA.NET", .wholeName = true, .wrap = true, .start = 0, .found = 2},
      {.text = "beta", .wholeName = true, .wrap = true, .start = 0, .found = std::nullopt},
      {.text = "delta", .wholeName = false, .wrap = true, .start = 0, .found = std::nullopt},
      {.text = "", .wholeName = false, .wrap = false, .start = 3, .found = 3},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(FindSiteRow(names, row.start, {row.text, row.wholeName, row.wrap}, fold), row.found)
        << '"' << row.text << "\" whole " << row.wholeName << " wrap " << row.wrap << " from "
        << row.start;
  }
  EXPECT_EQ(FindSiteRow({}, 0, {"a", false, true}, fold), std::nullopt);
}
