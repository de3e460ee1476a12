// Drives the real program under Wine: its sheet, tabs and page controls, seen from outside the
// process through window messages.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "app_driver.h"
#include "l10n/string_table.h"
#include "pages/camera_mic_page_ids.h"
#include "pages/updates_page_ids.h"
#include "ui_profile.h"

namespace {

constexpr LONG kRightToLeftStyles = WS_EX_LAYOUTRTL | WS_EX_RTLREADING;

class SheetTest : public ::testing::Test {
 protected:
  UiProfile profile;
  AppUnderTest app;
};

TEST_F(SheetTest, NoOkCancelOrContextHelp) {
  ASSERT_TRUE(app.Start());
  constexpr int kApply = 0x3021;
  for (int id : {IDOK, IDCANCEL, kApply}) {
    HWND button = GetDlgItem(app.sheet(), id);
    EXPECT_TRUE(button == nullptr || !IsWindowVisible(button)) << id;
  }
  EXPECT_EQ(GetWindowLongW(app.sheet(), GWL_EXSTYLE) & WS_EX_CONTEXTHELP, 0);
  RECT bounds{};
  GetWindowRect(app.sheet(), &bounds);
  EXPECT_EQ(std::pair(bounds.left, bounds.top), std::pair(0L, 0L));
}

TEST_F(SheetTest, AdministratorLocksCameraAndMicOnBlockWithoutChangingTheSetting) {
  ASSERT_TRUE(profile.WriteAdminConfig({{"AVHardwareDisable", "1"}}));
  ASSERT_TRUE(app.Start(L"startupdialog=cammic"));
  HWND camera = app.CurrentPage();
  EXPECT_TRUE(IsChecked(camera, IDC_CAMERA_MIC_BLOCK));
  for (int id :
       {IDC_CAMERA_MIC_HEADING, IDC_CAMERA_MIC_ASK, IDC_CAMERA_MIC_BLOCK, IDC_CAMERA_MIC_BY_SITE}) {
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(camera, id))) << id;
  }
  // The lock is shown at start only; a return to the tab reads the setting again (as every
  // page does on every return) and shows the stored Ask, still locked.
  app.SelectTab(0);
  camera = app.SelectTab(1);
  EXPECT_TRUE(IsChecked(camera, IDC_CAMERA_MIC_ASK));
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(camera, IDC_CAMERA_MIC_ASK)));
}

// Which facts lock the page is UpdatesLogic's table; here the command line's mode reaches
// the page and the page applies the lock to every control.
TEST_F(SheetTest, UpdatesPageOnlyInformsInChromeMode) {
  profile.AddPlayer(PlayerKind::Npapi, L"32.0.0.465");
  ASSERT_TRUE(profile.WriteAdminConfig({{"AutoUpdateDisable", "1"}}));
  ASSERT_TRUE(app.Start(L"startupdialog=advanced mode=chrome"));
  HWND updates = app.CurrentPage();
  EXPECT_TRUE(IsChecked(updates, IDC_UPDATES_NEVER));
  for (int id : {IDC_UPDATES_AUTOMATIC, IDC_UPDATES_NOTIFY, IDC_UPDATES_NEVER, IDC_UPDATES_HEADING,
                 IDC_UPDATES_EXPLANATION, IDC_UPDATES_CHECK_NOW, IDC_NPAPI_VERSION_LABEL,
                 IDC_NPAPI_VERSION}) {
    HWND control = GetDlgItem(updates, id);
    EXPECT_FALSE(IsWindowEnabled(control)) << id;
    EXPECT_TRUE(IsWindowVisible(control)) << id;
  }
  EXPECT_FALSE(IsWindowVisible(GetDlgItem(updates, IDC_UPDATES_CHANGE)));
}

// Run once in a left-to-right and once in a right-to-left locale.
TEST_F(SheetTest, LayoutIsMirroredExactlyInRightToLeftLanguages) {
  const bool rightToLeft = IsRightToLeftLanguage(GetUserDefaultUILanguage());
  const LONG sheetStyle = rightToLeft ? WS_EX_LAYOUTRTL : 0;
  const LONG controlStyles = rightToLeft ? kRightToLeftStyles : 0;
  profile.AddPlayer(PlayerKind::Ppapi, L"32.0.0.466");
  ASSERT_TRUE(app.Start());
  EXPECT_EQ(GetWindowLongW(app.sheet(), GWL_EXSTYLE) & WS_EX_LAYOUTRTL, sheetStyle);
  EXPECT_EQ(GetWindowLongW(app.tabs(), GWL_EXSTYLE) & kRightToLeftStyles, controlStyles);
  ASSERT_EQ(app.TabCount(), 5);
  for (int tab = 0; tab < 5; ++tab) {
    EXPECT_EQ(GetWindowLongW(app.SelectTab(tab), GWL_EXSTYLE) & kRightToLeftStyles, controlStyles)
        << tab;
  }
  // A player adds the Updates page, which shows its version.
  EXPECT_EQ(WindowText(GetDlgItem(app.SelectTab(3), IDC_PPAPI_VERSION)), L"32.0.0.466");
}

TEST(ProgramResourcesTest, ManifestAsksForCommonControlsSix) {
  HMODULE module =
      LoadLibraryExW(WindowsPath(VP_APP_EXE_PATH).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  ASSERT_NE(module, nullptr);
  HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(24));
  ASSERT_NE(resource, nullptr) << "no RT_MANIFEST 1";
  HGLOBAL loaded = LoadResource(module, resource);
  std::string manifest(static_cast<const char*>(LockResource(loaded)),
                       SizeofResource(module, resource));
  FreeLibrary(module);
  size_t identity = manifest.find("name=\"Microsoft.Windows.Common-Controls\"");
  ASSERT_NE(identity, std::string::npos);
  size_t end = manifest.find("/>", identity);
  std::string assembly = manifest.substr(identity, end - identity);
  EXPECT_NE(assembly.find("version=\"6.0.0.0\""), std::string::npos) << assembly;
}

}  // namespace
