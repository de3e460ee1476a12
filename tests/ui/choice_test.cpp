// Clicks on the pages' radio buttons in the real program, checked in the files it writes and in
// its controls.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "app_driver.h"
#include "l10n/string_table.h"
#include "pages/camera_mic_page_ids.h"
#include "pages/playback_page_ids.h"
#include "pages/storage_page_ids.h"
#include "platform/file_io.h"
#include "platform/win32/utf16.h"
#include "platform/win32/win32_system.h"
#include "support/temp_folder.h"
#include "ui_profile.h"

namespace {

const std::string kMaster = SMSettingsManager::MasterDomain();

class ChoiceTest : public ::testing::Test {
 protected:
  UiProfile profile;
  AppUnderTest app;
};

TEST_F(ChoiceTest, PlaybackBlockIsStoredAndLocksTheBySiteButton) {
  ASSERT_TRUE(profile.AddSites({"a.com"}));
  ASSERT_TRUE(app.Start(L"startupdialog=playback"));
  const std::string siteBefore = profile.FileBytes("a.com");
  HWND page = app.CurrentPage();
  ASSERT_NE(GetDlgItem(page, IDC_P2P_BLOCK), nullptr);
  HWND bySite = GetDlgItem(page, IDC_P2P_BY_SITE);
  ASSERT_TRUE(IsWindowEnabled(bySite));

  Click(page, IDC_P2P_BLOCK);
  EXPECT_TRUE(
      WaitFor([&] { return profile.StoredAs<bool>(kMaster, "disallowP2PUplink") == true; }));
  EXPECT_TRUE(WaitFor([&] { return !IsWindowEnabled(bySite); }));
  EXPECT_TRUE(IsChecked(page, IDC_P2P_BLOCK));
  EXPECT_FALSE(IsChecked(page, IDC_P2P_ASK));

  // A click on the radio that is already checked stores the choice again, over what another
  // program wrote in the meantime.
  ASSERT_TRUE(profile.SetGlobal(SettingValue::Boolean("disallowP2PUplink", false)));
  Click(page, IDC_P2P_BLOCK);
  EXPECT_TRUE(
      WaitFor([&] { return profile.StoredAs<bool>(kMaster, "disallowP2PUplink") == true; }));

  Click(page, IDC_P2P_ASK);
  EXPECT_TRUE(
      WaitFor([&] { return profile.StoredAs<bool>(kMaster, "disallowP2PUplink") == false; }));
  EXPECT_TRUE(WaitFor([&] { return IsWindowEnabled(bySite) != FALSE; }));
  EXPECT_TRUE(IsChecked(page, IDC_P2P_ASK));
  // The sites' own peer-assisted answers are left as they were.
  EXPECT_EQ(profile.FileBytes("a.com"), siteBefore);
}

// Which of a site's four answers each choice forces is the native tests' table; here one click
// each way reaches the master file and, after it, the listed site.
TEST_F(ChoiceTest, CameraMicChoiceIsForcedOnTheListedSites) {
  ASSERT_TRUE(profile.AddSites({"a.com"}));
  ASSERT_TRUE(app.Start(L"startupdialog=cammic"));
  HWND page = app.CurrentPage();
  ASSERT_NE(GetDlgItem(page, IDC_CAMERA_MIC_BLOCK), nullptr);
  for (const auto& [controlId, block] :
       {std::pair{IDC_CAMERA_MIC_BLOCK, true}, std::pair{IDC_CAMERA_MIC_ASK, false}}) {
    Click(page, controlId);
    EXPECT_TRUE(WaitFor([&] { return profile.StoredAs<bool>(kMaster, "defaultalways") == block; }))
        << block;
    EXPECT_TRUE(WaitFor([&] { return profile.StoredAs<bool>("a.com", "always") == block; }))
        << block;
    EXPECT_TRUE(IsChecked(page, controlId));
  }
}

TEST_F(ChoiceTest, StorageBlockAsksFirstThenDeletesAndStores) {
  const std::vector<std::string> sites = {"a.com", "b.org"};
  ASSERT_TRUE(profile.AddSites(sites));
  const std::string storedData = profile.StoredDataFile("a.com");
  WriteFileBytes(PathFromUtf8(storedData), "progress");
  ASSERT_TRUE(app.Start(L"startupdialog=storage"));
  HWND page = app.CurrentPage();
  ASSERT_NE(GetDlgItem(page, IDC_STORAGE_BLOCK), nullptr);
  ASSERT_TRUE(IsChecked(page, IDC_STORAGE_ALLOW));
  const std::string masterBefore = profile.FileBytes(kMaster);

  // Cancel, the default button, changes nothing.
  Click(page, IDC_STORAGE_BLOCK);
  HWND box = app.WaitForMessageBox();
  ASSERT_NE(box, nullptr) << "no confirmation";
  EXPECT_EQ(WindowText(box), UserText(21100));
  EXPECT_NE(GetWindowLongW(GetDlgItem(box, IDCANCEL), GWL_STYLE) & BS_DEFPUSHBUTTON, 0);
  ASSERT_TRUE(Answer(box, IDCANCEL));
  EXPECT_TRUE(WaitFor([&] { return IsChecked(page, IDC_STORAGE_ALLOW); }));
  EXPECT_FALSE(IsChecked(page, IDC_STORAGE_BLOCK));
  EXPECT_EQ(profile.FileBytes(kMaster), masterBefore);
  EXPECT_EQ(ReadWholeFile(storedData).value_or("missing"), "progress");

  // OK blocks: the limit everywhere and the sites' data gone.
  Click(page, IDC_STORAGE_BLOCK);
  box = app.WaitForMessageBox();
  ASSERT_NE(box, nullptr) << "no confirmation the second time";
  ASSERT_TRUE(Answer(box, IDOK));
  EXPECT_TRUE(WaitFor([&] { return profile.StoredAs<double>(kMaster, "defaultklimit") == -1.0; }));
  for (const std::string& site : sites) {
    EXPECT_TRUE(WaitFor([&] { return profile.StoredAs<double>(site, "klimit") == -1.0; })) << site;
  }
  EXPECT_FALSE(ReadWholeFile(storedData).has_value());
  EXPECT_TRUE(IsChecked(page, IDC_STORAGE_BLOCK));
}

}  // namespace
