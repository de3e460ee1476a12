// The Advanced page's three buttons and the Storage page's "Delete All…" in the real program:
// the message boxes answered, the dialogs worked, and the files checked on disk afterwards.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "app_driver.h"
#include "dialogs/add_location_ids.h"
#include "dialogs/clear_data_ids.h"
#include "dialogs/trusted_locations_ids.h"
#include "pages/advanced_page_ids.h"
#include "pages/storage_page_ids.h"
#include "platform/file_io.h"
#include "platform/win32/utf16.h"
#include "settings/settings_manager.h"
#include "support/temp_folder.h"
#include "ui_profile.h"

namespace fs = std::filesystem;

namespace {

const std::string kMaster = SMSettingsManager::MasterDomain();
// The static control that holds a message box's text.
constexpr int kMessageBoxTextId = 0xFFFF;

// Another program with a file open that it does not let anybody delete.
class HeldOpen {
 public:
  explicit HeldOpen(const fs::path& file)
      : handle_(CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr)) {}
  ~HeldOpen() {
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
  }
  bool held() const { return handle_ != INVALID_HANDLE_VALUE; }

 private:
  HANDLE handle_;
};

class AdvancedTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Win32PlatformServices& platform = profile.platform();
    licenceFile = PathFromUtf8(platform.PrivateDataFolder()) / L"store" / L"licence.bin";
    assetFile = PathFromUtf8(platform.AssetCacheFolder()) / L"asset.bin";
    ASSERT_TRUE(profile.AddSites({"a.com"}));
    siteData = PathFromUtf8(profile.StoredDataFile("a.com"));
    for (const fs::path& file : {licenceFile, assetFile, siteData}) WriteFileBytes(file, "data");
  }
  // A dialog or message box of the program with this caption, once it is shown.
  HWND WaitForWindow(uint32_t captionId) {
    return app.WaitForDialog(WithCaption(UserText(captionId)));
  }
  // Types (or pastes) a path into the add-location dialog and confirms it.
  void AddLocation(HWND trusted, const std::wstring& path, bool type);
  static bool WaitUntilClosed(HWND window) {
    return WaitFor([&] { return !IsWindow(window); });
  }
  std::vector<std::string> TrustedOnDisk() {
    std::vector<std::string> names;
    std::optional<SettingValue> stored = profile.Stored(kMaster, "trustedPaths");
    if (stored && stored->type() == kSettingArray) {
      for (const SettingValue& element : stored->array()) names.push_back(element.name());
    }
    return names;
  }

  UiProfile profile;
  AppUnderTest app;
  fs::path licenceFile;
  fs::path assetFile;
  fs::path siteData;
};

void AdvancedTest::AddLocation(HWND trusted, const std::wstring& path, bool type) {
  Click(trusted, IDC_TRUSTED_ADD);
  HWND dialog = WaitForWindow(84000);
  ASSERT_NE(dialog, nullptr);
  HWND edit = GetDlgItem(dialog, IDC_ADD_LOCATION_PATH);
  HWND confirm = GetDlgItem(dialog, IDOK);
  EXPECT_FALSE(IsWindowEnabled(confirm));
  if (type) {
    for (wchar_t c : path) PostMessageW(edit, WM_CHAR, c, 0);
  } else {
    SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
  }
  ASSERT_TRUE(WaitFor([&] { return WindowText(edit) == path && IsWindowEnabled(confirm); }));
  Click(dialog, IDOK);
  ASSERT_TRUE(WaitUntilClosed(dialog));
}

TEST_F(AdvancedTest, DeauthorizeDeletesTheLicencesOnlyAfterOk) {
  ASSERT_TRUE(app.Start(L"startupdialog=advanced"));
  HWND page = app.CurrentPage();
  ASSERT_NE(GetDlgItem(page, IDC_DEAUTHORIZE), nullptr);

  Click(page, IDC_DEAUTHORIZE);
  HWND box = WaitForWindow(41104);
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(WindowText(GetDlgItem(box, kMessageBoxTextId)),
            UserText(41105) + L"\n\n" + UserText(41106));
  ASSERT_TRUE(Answer(box, IDCANCEL));
  EXPECT_TRUE(fs::exists(licenceFile));

  Click(page, IDC_DEAUTHORIZE);
  box = WaitForWindow(41104);
  ASSERT_NE(box, nullptr);
  ASSERT_TRUE(Answer(box, IDOK));
  EXPECT_TRUE(WaitFor([&] { return !fs::exists(licenceFile); }));
  // Nothing else was touched.
  EXPECT_TRUE(fs::exists(siteData) && fs::exists(assetFile));
}

TEST_F(AdvancedTest, ClearDataFromBothPagesWithCancelAndALockedLicence) {
  ASSERT_TRUE(app.Start(L"startupdialog=advanced"));
  Click(app.CurrentPage(), IDC_ADVANCED_DELETE_ALL);
  HWND dialog = WaitForWindow(71000);
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(IsChecked(dialog, IDC_CLEAR_SITE_DATA));
  EXPECT_FALSE(IsChecked(dialog, IDC_CLEAR_LICENSES));
  Click(dialog, IDC_CLEAR_DATA_CANCEL);
  ASSERT_TRUE(WaitUntilClosed(dialog));
  EXPECT_TRUE(fs::exists(siteData) && fs::exists(assetFile) && fs::exists(licenceFile));

  // The Storage page's "Delete All…" opens the same dialog.
  Click(app.SelectTab(0), IDC_STORAGE_DELETE_ALL);
  dialog = WaitForWindow(71000);
  ASSERT_NE(dialog, nullptr);
  Click(dialog, IDC_CLEAR_LICENSES);
  ASSERT_TRUE(WaitFor([&] { return IsChecked(dialog, IDC_CLEAR_LICENSES); }));
  HeldOpen holder(licenceFile);
  ASSERT_TRUE(holder.held());
  Click(dialog, IDC_CLEAR_DATA_DELETE);
  HWND box = WaitForWindow(11500);
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(WindowText(GetDlgItem(box, kMessageBoxTextId)), UserText(11502));
  // The site data went first and is gone although the licences could not go.
  EXPECT_FALSE(fs::exists(siteData) || fs::exists(assetFile));
  ASSERT_TRUE(Answer(box, IDOK));
  EXPECT_TRUE(WaitUntilClosed(dialog));
  EXPECT_TRUE(fs::exists(licenceFile));
  std::optional<SettingValue> domains = profile.Stored(kMaster, "domains");
  ASSERT_TRUE(domains && domains->type() == kSettingArray);
  EXPECT_TRUE(domains->array().empty());
}

TEST_F(AdvancedTest, TrustedLocationsAddEditAndRemove) {
  const std::wstring game = L"C:\\dev\\game.vtm";
  const std::wstring accented = L"D:\\Entw\u00fcrfe\\\u6e2c\u8a66";
  const std::wstring longPath = L"C:\\" + std::wstring(280, L'x') + L"\\long.vtm";
  // A setting of another type lists nothing and is not rewritten by opening; Add replaces it.
  ASSERT_TRUE(profile.SetGlobal(SettingValue::String("trustedPaths", "C:\\text")));
  ASSERT_TRUE(app.Start(L"startupdialog=advanced"));
  const std::string before = profile.FileBytes(kMaster);
  Click(app.CurrentPage(), IDC_TRUSTED_LOCATIONS);
  HWND trusted = WaitForWindow(81000);
  ASSERT_NE(trusted, nullptr);
  HWND list = GetDlgItem(trusted, IDC_TRUSTED_LIST);
  EXPECT_EQ(ListRowCount(list), 0);
  EXPECT_EQ(profile.FileBytes(kMaster), before);

  AddLocation(trusted, game, true);
  AddLocation(trusted, accented, false);
  AddLocation(trusted, longPath, false);
  AddLocation(trusted, game, false);  // already listed: nothing changes
  EXPECT_EQ(ListRows(list), (std::vector<std::wstring>{game, accented, longPath}));
  const std::vector<std::string> added{ToUtf8(game).value(), ToUtf8(accented).value(),
                                       ToUtf8(longPath).value()};
  EXPECT_EQ(TrustedOnDisk(), added);

  // In place: an empty text and a name already listed put the former text back.
  const std::wstring renamed = L"C:\\dev\\renamed.vtm";
  ASSERT_TRUE(EditListRow(list, 0, renamed));
  ASSERT_TRUE(EditListRow(list, 1, L""));
  ASSERT_TRUE(EditListRow(list, 2, renamed));
  EXPECT_EQ(ListRows(list), (std::vector<std::wstring>{renamed, accented, longPath}));
  EXPECT_EQ(TrustedOnDisk(),
            (std::vector<std::string>{ToUtf8(renamed).value(), added[1], added[2]}));

  SelectListRows(list, {0, 2});
  Click(trusted, IDC_TRUSTED_REMOVE);
  ASSERT_TRUE(WaitFor([&] { return ListRowCount(list) == 1; }));
  EXPECT_EQ(ListRows(list), (std::vector<std::wstring>{accented}));
  EXPECT_EQ(TrustedOnDisk(), (std::vector<std::string>{added[1]}));

  Click(trusted, IDC_TRUSTED_CLOSE);
  EXPECT_TRUE(WaitUntilClosed(trusted));
}

}  // namespace
