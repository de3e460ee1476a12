// Clicks on the pages' radio buttons in the real program, checked in the files it writes and in
// its controls.
#include <gtest/gtest.h>

#include <string>

#include "app_driver.h"
#include "pages/camera_mic_page_ids.h"
#include "pages/playback_page_ids.h"
#include "pages/storage_page_ids.h"
#include "platform/file_io.h"
#include "support/temp_folder.h"
#include "ui_profile.h"

namespace {

const std::string kMasterDomain = SMSettingsManager::MasterDomain();

class ChoiceTest : public ::testing::Test {
 protected:
  UiProfile profile;
  AppUnderTest app;
};

// What each choice stores is the page logic's tables (tests/pages); here one click each way
// reaches the files and the page's controls.
TEST_F(ChoiceTest, PlaybackBlockIsStoredAndLocksTheBySiteButton) {
  ASSERT_TRUE(app.Start(L"startupdialog=playback"));
  HWND page = app.CurrentPage();
  HWND bySite = GetDlgItem(page, IDC_P2P_BY_SITE);
  ASSERT_TRUE(IsWindowEnabled(bySite));
  auto stored = [&] { return profile.StoredAs<bool>(kMasterDomain, "disallowP2PUplink"); };

  Click(page, IDC_P2P_BLOCK);
  EXPECT_TRUE(WaitFor([&] { return stored() == true && !IsWindowEnabled(bySite); }));
  EXPECT_FALSE(IsChecked(page, IDC_P2P_ASK));
  // A click on the radio that is already checked stores the choice again, over what another
  // program wrote in the meantime.
  ASSERT_TRUE(profile.SetGlobal(SettingValue::Boolean("disallowP2PUplink", false)));
  Click(page, IDC_P2P_BLOCK);
  EXPECT_TRUE(WaitFor([&] { return stored() == true; }));

  Click(page, IDC_P2P_ASK);
  EXPECT_TRUE(WaitFor([&] { return stored() == false && IsWindowEnabled(bySite); }));
  EXPECT_TRUE(IsChecked(page, IDC_P2P_ASK));
}

TEST_F(ChoiceTest, CameraMicChoiceIsForcedOnTheListedSites) {
  ASSERT_TRUE(profile.AddSites({"a.com"}));
  ASSERT_TRUE(app.Start(L"startupdialog=cammic"));
  HWND page = app.CurrentPage();
  for (const auto& [controlId, block] :
       {std::pair{IDC_CAMERA_MIC_BLOCK, true}, std::pair{IDC_CAMERA_MIC_ASK, false}}) {
    Click(page, controlId);
    EXPECT_TRUE(WaitFor([&] {
      return profile.StoredAs<bool>(kMasterDomain, "defaultalways") == block &&
             profile.StoredAs<bool>("a.com", "always") == block;
    })) << block;
    EXPECT_TRUE(IsChecked(page, controlId));
  }
}

TEST_F(ChoiceTest, StorageBlockAsksFirstThenDeletesAndStores) {
  ASSERT_TRUE(profile.AddSites({"a.com"}));
  const std::string storedData = profile.StoredDataFile("a.com");
  WriteFileBytes(PathFromUtf8(storedData), "progress");
  ASSERT_TRUE(app.Start(L"startupdialog=storage"));
  HWND page = app.CurrentPage();
  ASSERT_TRUE(IsChecked(page, IDC_STORAGE_ALLOW));
  auto confirmation = [&] {
    Click(page, IDC_STORAGE_BLOCK);
    return app.WaitForDialog(WithCaption(UserText(TextId::kStorageBlockAllCaption)));
  };

  // Cancel, the default button, puts the Allow radio back.
  HWND box = confirmation();
  ASSERT_NE(box, nullptr);
  EXPECT_NE(GetWindowLongW(GetDlgItem(box, IDCANCEL), GWL_STYLE) & BS_DEFPUSHBUTTON, 0);
  ASSERT_TRUE(Answer(box, IDCANCEL));
  EXPECT_TRUE(WaitFor([&] { return IsChecked(page, IDC_STORAGE_ALLOW); }));
  EXPECT_FALSE(IsChecked(page, IDC_STORAGE_BLOCK));
  EXPECT_TRUE(ReadWholeFile(storedData).has_value());

  box = confirmation();
  ASSERT_NE(box, nullptr);
  ASSERT_TRUE(Answer(box, IDOK));
  EXPECT_TRUE(WaitFor([&] {
    return profile.StoredAs<double>(kMasterDomain, "defaultklimit") == -1.0 &&
           profile.StoredAs<double>("a.com", "klimit") == -1.0;
  }));
  EXPECT_FALSE(ReadWholeFile(storedData).has_value());
  EXPECT_TRUE(IsChecked(page, IDC_STORAGE_BLOCK));
}

// Another program holds the master file open and does not share its deletion, so the program
// cannot replace it: the page shows the choice that is still on disk, the by-site button
// following it. (Which pages go back, and to what, is the page logic's.)
TEST_F(ChoiceTest, AFailedMasterWriteShowsWhatIsOnDisk) {
  ASSERT_TRUE(app.Start(L"startupdialog=playback"));
  const std::string master = profile.SettingsFile(kMasterDomain);
  const std::optional<std::string> before = ReadWholeFile(master);
  ASSERT_TRUE(before.has_value());
  HANDLE held = CreateFileW(PathFromUtf8(master).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);

  HWND page = app.CurrentPage();
  Click(page, IDC_P2P_BLOCK);
  EXPECT_TRUE(IsChecked(page, IDC_P2P_ASK));
  EXPECT_FALSE(IsChecked(page, IDC_P2P_BLOCK));
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(page, IDC_P2P_BY_SITE)));
  CloseHandle(held);
  EXPECT_EQ(ReadWholeFile(master), before);
}

}  // namespace
