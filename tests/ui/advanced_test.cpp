// The Advanced page's three buttons and the Storage page's "Delete All…" in the real program:
// the message boxes answered, the dialogs worked, and the files checked on disk afterwards.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app_driver.h"
#include "dialogs/add_location_ids.h"
#include "dialogs/clear_data_ids.h"
#include "dialogs/trusted_locations_ids.h"
#include "pages/advanced_page_ids.h"
#include "platform/file_io.h"
#include "platform/win32/utf16.h"
#include "settings/settings_manager.h"
#include "support/temp_folder.h"
#include "ui_profile.h"

namespace fs = std::filesystem;

namespace {

const std::string kMasterDomain = SMSettingsManager::MasterDomain();
// The static control that holds a message box's text.
constexpr int kMessageBoxTextId = 0xFFFF;

class AdvancedTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Win32PlatformServices& platform = profile.platform();
    licenceFile = PathFromUtf8(platform.PrivateDataFolder()) / L"store" / L"licence.bin";
    assetFile = PathFromUtf8(platform.AssetCacheFolder()) / L"asset.bin";
    ASSERT_TRUE(profile.AddSites({"a.com"}));
    siteData = PathFromUtf8(profile.StoredDataFile("a.com"));
    for (const fs::path& file : {licenceFile, assetFile, siteData}) WriteFileBytes(file, "data");
    ASSERT_TRUE(app.Start(L"startupdialog=advanced"));
  }
  // Clicks the button and waits for the dialog or message box with this caption.
  HWND Open(HWND owner, int buttonId, TextId captionId) {
    Click(owner, buttonId);
    return app.WaitForDialog(WithCaption(UserText(captionId)));
  }
  std::optional<std::vector<std::string>> TrustedOnDisk() {
    return profile.StoredNames(kMasterDomain, "trustedPaths");
  }

  UiProfile profile;
  AppUnderTest app;
  fs::path licenceFile;
  fs::path assetFile;
  fs::path siteData;
};

// When the licences go is the logic's table (Deauthorize.DeletesLicencesOnlyAfterOk...); here
// the box shows its text and OK reaches the files.
TEST_F(AdvancedTest, DeauthorizeDeletesTheLicencesOnlyAfterOk) {
  HWND box = Open(app.CurrentPage(), IDC_DEAUTHORIZE, TextId::kDeauthorizeCaption);
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(
      WindowText(GetDlgItem(box, kMessageBoxTextId)),
      UserText(TextId::kDeauthorizeText) + L"\n\n" + UserText(TextId::kDeauthorizeCloseBrowsers));
  ASSERT_TRUE(Answer(box, IDOK));
  EXPECT_TRUE(WaitFor([&] { return !fs::exists(licenceFile); }));
  EXPECT_TRUE(fs::exists(siteData) && fs::exists(assetFile));
}

// What each check box deletes is ClearData's table; here the dialog's defaults, a check box,
// and a licence another program holds open, which Windows refuses to delete.
TEST_F(AdvancedTest, ClearDataWithALockedLicence) {
  HWND dialog = Open(app.CurrentPage(), IDC_ADVANCED_DELETE_ALL, TextId::kClearDataTitle);
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(IsChecked(dialog, IDC_CLEAR_SITE_DATA));
  EXPECT_FALSE(IsChecked(dialog, IDC_CLEAR_LICENSES));
  Click(dialog, IDC_CLEAR_LICENSES);
  ASSERT_TRUE(WaitFor([&] { return IsChecked(dialog, IDC_CLEAR_LICENSES); }));
  // Another program holds the licence open and lets nobody delete it.
  std::unique_ptr<void, decltype(&CloseHandle)> holder(
      CreateFileW(licenceFile.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                  FILE_ATTRIBUTE_NORMAL, nullptr),
      &CloseHandle);
  ASSERT_NE(holder.get(), INVALID_HANDLE_VALUE);
  HWND box = Open(dialog, IDC_CLEAR_DATA_DELETE, TextId::kUnableToDeleteCaption);
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(WindowText(GetDlgItem(box, kMessageBoxTextId)), UserText(TextId::kLicencesNotDeleted));
  // The site data went first and is gone although the licences could not go.
  EXPECT_FALSE(fs::exists(siteData) || fs::exists(assetFile));
  ASSERT_TRUE(Answer(box, IDOK));
  EXPECT_TRUE(WaitFor([&] { return !IsWindow(dialog); }));
  EXPECT_TRUE(fs::exists(licenceFile));
  EXPECT_EQ(profile.StoredNames(kMasterDomain, "domains"), std::vector<std::string>{});
}

// Which names are kept is TrustedLocations' table; here two pasted paths, one edit in place and
// a removal of two rows reach the list and the file.
TEST_F(AdvancedTest, TrustedLocationsAddEditAndRemove) {
  const std::wstring game = L"C:\\dev\\game.vtm";
  const std::wstring accented = L"D:\\Entw\u00fcrfe\\\u6e2c\u8a66";
  const std::wstring renamed = L"C:\\" + std::wstring(280, L'x') + L"\\long.vtm";
  HWND trusted = Open(app.CurrentPage(), IDC_TRUSTED_LOCATIONS, TextId::kTrustedLocationsTitle);
  ASSERT_NE(trusted, nullptr);
  HWND list = GetDlgItem(trusted, IDC_TRUSTED_LIST);
  for (const std::wstring& path : {game, accented}) {
    HWND dialog = Open(trusted, IDC_TRUSTED_ADD, TextId::kEditLocationTitle);
    ASSERT_NE(dialog, nullptr);
    HWND edit = GetDlgItem(dialog, IDC_ADD_LOCATION_PATH);
    HWND confirm = GetDlgItem(dialog, IDOK);
    EXPECT_FALSE(IsWindowEnabled(confirm));
    SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
    ASSERT_TRUE(WaitFor([&] { return WindowText(edit) == path && IsWindowEnabled(confirm); }));
    ASSERT_TRUE(Answer(dialog, IDOK));
  }
  EXPECT_EQ(ListRows(list), (std::vector<std::wstring>{game, accented}));

  ASSERT_TRUE(EditListRow(list, 0, renamed));
  EXPECT_EQ(ListRows(list), (std::vector<std::wstring>{renamed, accented}));
  EXPECT_EQ(TrustedOnDisk(),
            (std::vector<std::string>{ToUtf8(renamed).value(), ToUtf8(accented).value()}));

  SelectListRows(list, {0, 1});
  Click(trusted, IDC_TRUSTED_REMOVE);
  EXPECT_TRUE(WaitFor([&] { return ListRowCount(list) == 0; }));
  EXPECT_EQ(TrustedOnDisk(), std::vector<std::string>{});
  ASSERT_TRUE(Answer(trusted, IDC_TRUSTED_CLOSE));
}

}  // namespace
