// The settings-by-site dialogs and the add-site dialog in the real program: opened from their
// pages, driven through their list, combos and buttons, and checked in the files on disk.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "app_driver.h"
#include "dialogs/add_site_ids.h"
#include "dialogs/site_list_ids.h"
#include "dialogs/site_list_logic.h"
#include "l10n/string_table.h"
#include "pages/camera_mic_page_ids.h"
#include "pages/playback_page_ids.h"
#include "pages/storage_page_ids.h"
#include "platform/win32/utf16.h"
#include "platform/win32/win32_system.h"
#include "support/temp_folder.h"
#include "ui_profile.h"

namespace {

std::wstring Wide(const std::string& text) {
  return ToUtf16(text).value_or(L"");
}

struct PageButton {
  int tab;
  int buttonId;
  TextId titleId;
};
constexpr PageButton kStorageButton{0, IDC_STORAGE_BY_SITE, TextId::kStorageSitesTitle};
constexpr PageButton kCameraButton{1, IDC_CAMERA_MIC_BY_SITE, TextId::kCameraMicSitesTitle};
constexpr PageButton kPeerButton{2, IDC_P2P_BY_SITE, TextId::kPeerAssistedSitesTitle};

class SiteListTest : public ::testing::Test {
 protected:
  // Opens the dialog from its page in the running program; null when it did not appear.
  HWND Open(const PageButton& button) {
    page = app.SelectTab(button.tab);
    Click(page, button.buttonId);
    return app.WaitForDialog(WithCaption(UserText(button.titleId)));
  }
  void Close(HWND dialog) { EXPECT_TRUE(Answer(dialog, IDC_SITE_LIST_CLOSE)); }
  // Starts the program, opens the storage list and selects its first and third rows; the
  // dialog once it has taken the selection, or null.
  HWND OpenStorageListWithTwoRowsSelected() {
    ::testing::AssertionResult started = app.Start();
    EXPECT_TRUE(started);
    HWND dialog = started ? Open(kStorageButton) : nullptr;
    if (dialog == nullptr) return nullptr;
    SelectListRows(GetDlgItem(dialog, IDC_SITE_LIST_VIEW), {0, 2});
    return WaitFor([&] { return IsWindowEnabled(GetDlgItem(dialog, IDC_SITE_LIST_REMOVE)); })
               ? dialog
               : nullptr;
  }

  UiProfile profile;
  AppUnderTest app;
  HWND page = nullptr;
};

// The order of a list view with the ascending sort style, which the program reproduces.
std::vector<std::wstring> SortedListViewOrder(const std::vector<std::string>& names) {
  HWND list = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_POPUP | LVS_REPORT | LVS_SORTASCENDING, 0, 0,
                              200, 200, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
  LVCOLUMNW column{};
  column.mask = LVCF_WIDTH;
  column.cx = 100;
  SendMessageW(list, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
  for (const std::string& name : names) {
    std::wstring text = Wide(name);
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = ListRowCount(list);
    item.pszText = text.data();
    SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
  }
  std::vector<std::wstring> order = ListRows(list);
  DestroyWindow(list);
  return order;
}

}  // namespace

TEST_F(SiteListTest, RowsComeInTheOrderOfASortedListView) {
  // Case, digits, '-', '.', '_', apostrophes and letters beyond ASCII; "xy" and "x\u00ADy"
  // (with a soft hyphen) compare equal, so their order depends on which was listed last.
  const std::vector<std::string> names = {
      "b.com",    "B.com",        "a-b.com",    "ab.com",         "a.com",        "a1.com",
      "a10.com",  "a2.com",       "Zeta.org",   "zeta.org",       "\xC3\xA4.com", "\xC3\x84.com",
      "z.com",    "\xC3\x9F.com", "-a.com",     "a_b.com",        "A.com",        "x--y",
      "xy",       "x-y",          "x\xC2\xADy", "1.com",          "\xD0\xB0.ru",  "co.op.net",
      "coop.net", "co-op.net",    "a'b.com",    "\xE6\x97\xA5.jp"};
  SMSettingsManager settings(profile.platform());
  // Listed in memory only: the order is the question here, not the sites' files.
  SettingArray domains;
  for (const std::string& name : names) domains.Append(SettingValue::Boolean(name, true));
  ASSERT_TRUE(settings.SetValue(SMSettingsManager::MasterDomain(),
                                SettingValue::Array("domains", domains)));
  SMFixedLanguageStringTable strings(0);
  Win32System system;
  SiteListModel model(SiteListKind::kPeerNetworking, settings, strings,
                      [&](const std::string& site) { return system.DisplaySortKey(site); });
  model.Fill();
  std::vector<std::wstring> shown;
  for (size_t row = 0; row < model.RowCount(); ++row) shown.push_back(Wide(model.SiteAt(row)));
  EXPECT_EQ(shown, SortedListViewOrder(names));
}

// What a choice writes, and the combo's common choice, are SiteListModel's tables; here each
// combo of both dialog kinds reaches the selected rows' files.
TEST_F(SiteListTest, AComboChangeWritesEverySelectedSite) {
  ASSERT_TRUE(profile.AddSites({"a.example", "b.example", "c.example"}));
  HWND dialog = OpenStorageListWithTwoRowsSelected();
  ASSERT_NE(dialog, nullptr);
  HWND list = GetDlgItem(dialog, IDC_SITE_LIST_VIEW);
  EXPECT_EQ(SendMessageW(GetDlgItem(dialog, IDC_SITE_LIST_CHOICE), CB_GETCURSEL, 0, 0),
            kChoiceAllow);
  ChooseComboItem(dialog, IDC_SITE_LIST_CHOICE, kChoiceBlock);
  EXPECT_EQ(ListRows(list, 2), (std::vector<std::wstring>{UserText(TextId::kChoiceWordBlock),
                                                          UserText(TextId::kChoiceWordAllow),
                                                          UserText(TextId::kChoiceWordBlock)}));
  EXPECT_EQ(profile.StoredAs<double>("a.example", "klimit"), -1.0);
  EXPECT_EQ(profile.StoredAs<double>("b.example", "klimit"), 100.0);
  Close(dialog);

  // The camera list: each combo writes its own pair.
  dialog = Open(kCameraButton);
  ASSERT_NE(dialog, nullptr);
  list = GetDlgItem(dialog, IDC_SITE_LIST_VIEW);
  SelectListRows(list, {1, 2});
  ChooseComboItem(dialog, IDC_SITE_LIST_HTTPS_SECURE_CHOICE, kChoiceAllow);
  ChooseComboItem(dialog, IDC_SITE_LIST_HTTPS_OTHER_CHOICE, kChoiceBlock);
  auto pairs = [&](const std::string& site) {
    return std::vector{
        profile.StoredAs<bool>(site, "alwayssecure"), profile.StoredAs<bool>(site, "allowsecure"),
        profile.StoredAs<bool>(site, "always"), profile.StoredAs<bool>(site, "allow")};
  };
  const std::vector<std::optional<bool>> chosen{true, true, true, false};
  EXPECT_EQ(pairs("b.example"), chosen);
  EXPECT_EQ(pairs("c.example"), chosen);
}

// Which names are added, and where, is SiteListModel's table; here the dialog's keys and
// buttons, and the new row selected in the list.
TEST_F(SiteListTest, AddSiteDialogTakesWhatIsTypedAndTheNewRowIsSelected) {
  ASSERT_TRUE(profile.AddSites({"a.example", "c.example"}));
  ASSERT_TRUE(app.Start());
  HWND dialog = Open(kPeerButton);
  ASSERT_NE(dialog, nullptr);
  HWND list = GetDlgItem(dialog, IDC_SITE_LIST_VIEW);
  auto openAdd = [&] {
    Click(dialog, IDC_SITE_LIST_ADD);
    return app.WaitForDialog(WithCaption(UserText(TextId::kPeerAssistedAddSiteTitle)));
  };
  auto type = [](HWND edit, const std::wstring& text) {
    for (wchar_t c : text) SendMessageW(edit, WM_CHAR, c, 0);
  };

  HWND add = openAdd();
  ASSERT_NE(add, nullptr);
  HWND edit = GetDlgItem(add, IDC_ADD_SITE_DOMAIN);
  HWND ok = GetDlgItem(add, IDOK);
  EXPECT_FALSE(IsWindowEnabled(ok));
  EXPECT_EQ(FocusOfThread(add), edit);
  EXPECT_EQ(SendMessageW(GetDlgItem(add, IDC_ADD_SITE_CHOICE), CB_GETCURSEL, 0, 0), 0);
  type(edit, L"x");
  EXPECT_TRUE(IsWindowEnabled(ok));
  SendMessageW(edit, WM_CHAR, VK_BACK, 0);
  EXPECT_FALSE(IsWindowEnabled(ok));
  // Escape cancels: nothing is added.
  PostMessageW(edit, WM_KEYDOWN, VK_ESCAPE, 0);
  ASSERT_TRUE(WaitFor([&] { return !IsWindow(add); }));
  EXPECT_EQ(ListRowCount(list), 2);

  add = openAdd();
  ASSERT_NE(add, nullptr);
  type(GetDlgItem(add, IDC_ADD_SITE_DOMAIN), L"B.example");
  ChooseComboItem(add, IDC_ADD_SITE_CHOICE, kChoiceBlock);
  ASSERT_TRUE(Answer(add, IDOK));
  ASSERT_TRUE(WaitFor([&] { return ListRowCount(list) == 3; }));
  EXPECT_EQ(ListRows(list), (std::vector<std::wstring>{L"a.example", L"B.example", L"c.example"}));
  EXPECT_EQ(ListSelectedRows(list), std::vector<int>{1});
  EXPECT_EQ(FocusOfThread(dialog), list);
  EXPECT_EQ(profile.StoredAs<bool>("B.example", "p2palways"), true);
  EXPECT_EQ(profile.StoredAs<bool>("B.example", "p2pallow"), false);
}

TEST_F(SiteListTest, RemoveTakesEverySelectedRowAndThePageIsReadAgainOnClose) {
  ASSERT_TRUE(profile.AddSites({"a.example", "b.example", "c.example", "d.example"}));
  const std::string stored = profile.StoredDataFile("c.example");
  WriteFileBytes(PathFromUtf8(stored), "data");
  HWND dialog = OpenStorageListWithTwoRowsSelected();
  ASSERT_NE(dialog, nullptr);
  HWND list = GetDlgItem(dialog, IDC_SITE_LIST_VIEW);
  Click(dialog, IDC_SITE_LIST_REMOVE);
  ASSERT_TRUE(WaitFor([&] { return ListRowCount(list) == 2; }));
  EXPECT_EQ(ListRows(list), (std::vector<std::wstring>{L"b.example", L"d.example"}));
  // Nothing selected: nothing to remove or change.
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDC_SITE_LIST_REMOVE)));
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDC_SITE_LIST_CHOICE)));
  EXPECT_EQ(WindowText(GetDlgItem(dialog, IDC_SITE_LIST_ADD)), UserText(TextId::kAddEllipsis));
  EXPECT_EQ(profile.StoredNames(SMSettingsManager::MasterDomain(), "domains"),
            (std::vector<std::string>{"b.example", "d.example"}));
  EXPECT_EQ(GetFileAttributesW(Wide(stored).c_str()), INVALID_FILE_ATTRIBUTES);

  // The page shows a stale choice while the dialog is open; closing it reads the settings again.
  SendMessageW(GetDlgItem(page, IDC_STORAGE_ALLOW), BM_SETCHECK, BST_UNCHECKED, 0);
  SendMessageW(GetDlgItem(page, IDC_STORAGE_BLOCK), BM_SETCHECK, BST_CHECKED, 0);
  Close(dialog);
  EXPECT_TRUE(WaitFor([&] { return IsChecked(page, IDC_STORAGE_ALLOW); }));
  EXPECT_FALSE(IsChecked(page, IDC_STORAGE_BLOCK));
}
