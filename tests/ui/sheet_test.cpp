// Drives the real program under Wine: its sheet, tabs and page controls, seen from outside the
// process through window messages.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "app/common_controls.h"
#include "app/shell_resource_ids.h"
#include "app_driver.h"
#include "l10n/string_table.h"
#include "pages/advanced_page_ids.h"
#include "pages/camera_mic_page_ids.h"
#include "pages/playback_page_ids.h"
#include "pages/storage_page_ids.h"
#include "pages/updates_page_ids.h"
#include "platform/win32/utf16.h"
#include "ui_profile.h"

namespace {

constexpr LONG kRightToLeftStyles = WS_EX_LAYOUTRTL | WS_EX_RTLREADING;

class SheetTest : public ::testing::Test {
 protected:
  UiProfile profile;
  AppUnderTest app;
};

TEST_F(SheetTest, TheProgramOpensItsSheet) {
  ASSERT_TRUE(app.Start());
  ASSERT_NE(app.sheet(), nullptr);
  EXPECT_TRUE(IsWindowVisible(app.sheet()));
  EXPECT_NE(app.CurrentPage(), nullptr);
}

TEST_F(SheetTest, TabsFollowTheInstalledPlayers) {
  ASSERT_TRUE(app.Start());
  EXPECT_EQ(app.TabCount(), 4) << "no player";

  profile.AddPlayer(PlayerKind::Npapi, L"32.0.0.465", /*partner=*/true);
  profile.AddPlayer(PlayerKind::Ppapi, L"32.0.0.466", /*partner=*/true);
  ASSERT_TRUE(app.Start());
  EXPECT_EQ(app.TabCount(), 4) << "partner builds only";

  profile.AddPlayer(PlayerKind::Npapi, L"32.0.0.465");
  ASSERT_TRUE(app.Start());
  EXPECT_EQ(app.TabCount(), 5) << "a plain NPAPI player";
  // The fourth tab is the Updates page and shows the player's version.
  HWND updates = app.SelectTab(3);
  EXPECT_EQ(WindowText(GetDlgItem(updates, IDC_NPAPI_VERSION)), L"32.0.0.465");
}

TEST_F(SheetTest, StartPageFollowsTheKeywordsFixedIndices) {
  struct Case {
    bool updatesPage;
    const wchar_t* arguments;
    int tab;
    int controlOfThatPage;
  };
  const Case cases[] = {
      {true, L"startupdialog=storage", 0, IDC_STORAGE_ALLOW},
      {true, L"startupdialog=cammic", 1, IDC_CAMERA_MIC_ASK},
      {true, L"startupdialog=playback", 2, IDC_P2P_ASK},
      // The relaunch from the Updates page passes "advanced" and must land on Updates.
      {true, L"startupdialog=advanced", 3, IDC_UPDATES_AUTOMATIC},
      {true, L"startupdialog=updates", 4, IDC_DEAUTHORIZE},
      {true, L"StartupDialog=playback", 0, IDC_STORAGE_ALLOW},
      {false, L"startupdialog=advanced", 3, IDC_DEAUTHORIZE},
      {false, L"startupdialog=updates", 0, IDC_STORAGE_ALLOW},
  };
  for (const Case& test : cases) {
    if (test.updatesPage)
      profile.AddPlayer(PlayerKind::Ppapi, L"32.0.0.466");
    else
      profile.Clear();
    ASSERT_TRUE(app.Start(test.arguments));
    std::string label = ToUtf8(test.arguments).value_or("?");
    EXPECT_EQ(app.CurrentTab(), test.tab) << label;
    EXPECT_NE(GetDlgItem(app.CurrentPage(), test.controlOfThatPage), nullptr) << label;
  }
}

TEST_F(SheetTest, NoOkCancelOrContextHelp) {
  ASSERT_TRUE(app.Start());
  for (int id : {IDOK, IDCANCEL}) {
    HWND button = GetDlgItem(app.sheet(), id);
    EXPECT_TRUE(button == nullptr || !IsWindowVisible(button)) << id;
  }
  HWND apply = GetDlgItem(app.sheet(), 0x3021);
  EXPECT_TRUE(apply == nullptr || !IsWindowVisible(apply));
  EXPECT_EQ(ExtendedStyle(app.sheet()) & WS_EX_CONTEXTHELP, 0);
  RECT bounds{};
  GetWindowRect(app.sheet(), &bounds);
  EXPECT_EQ(bounds.left, 0);
  EXPECT_EQ(bounds.top, 0);
}

struct ControlText {
  int controlId;
  uint32_t textId;
  bool link = false;
};

std::vector<ControlText> WithNotice(std::vector<ControlText> texts) {
  texts.push_back({IDC_NOTICE_TEXT, 13101});
  texts.push_back({IDC_NOTICE_LINK, 13102, true});
  return texts;
}

TEST_F(SheetTest, EveryPageShowsTheStringTablesTexts) {
  profile.AddPlayer(PlayerKind::Npapi, L"32.0.0.465");
  ASSERT_TRUE(app.Start());
  Win32System system;
  SMUserLanguageStringTable strings(system);
  const std::vector<std::vector<ControlText>> pages{
      WithNotice({{IDC_STORAGE_HEADING, 21001},
                  {IDC_STORAGE_EXPLANATION, 21002},
                  {IDC_STORAGE_PRIVACY_LINK, 21106, true},
                  {IDC_STORAGE_ALLOW, 21004},
                  {IDC_STORAGE_ASK, 21005},
                  {IDC_STORAGE_BLOCK, 21006},
                  {IDC_STORAGE_BY_SITE, 21007},
                  {IDC_STORAGE_DELETE_ALL, 11006},
                  {IDC_PRIVATE_BROWSING_HEADING, 21300},
                  {IDC_PRIVATE_BROWSING_EXPLANATION, 21301},
                  {IDC_PRIVATE_BROWSING_LINK, 21302, true}}),
      WithNotice({{IDC_CAMERA_MIC_HEADING, 31001},
                  {IDC_CAMERA_MIC_ASK, 31002},
                  {IDC_CAMERA_MIC_BLOCK, 31003},
                  {IDC_CAMERA_MIC_BY_SITE, 31004}}),
      WithNotice({{IDC_P2P_HEADING, 41001},
                  {IDC_P2P_EXPLANATION, 41002},
                  {IDC_P2P_HELP_LINK, 41003, true},
                  {IDC_P2P_ASK, 41004},
                  {IDC_P2P_BLOCK, 41005},
                  {IDC_P2P_BY_SITE, 41006}}),
      {{IDC_UPDATES_HEADING, 101200},
       {IDC_UPDATES_EXPLANATION, 101201},
       {IDC_UPDATES_AUTOMATIC, 101202},
       {IDC_UPDATES_NOTIFY, 101209},
       {IDC_UPDATES_NEVER, 101203},
       {IDC_UPDATES_CHANGE, 101208},
       {IDC_UPDATES_CHECK_NOW, 101205},
       {IDC_ACTIVEX_VERSION_LABEL, 102000},
       {IDC_NPAPI_VERSION_LABEL, 102001},
       {IDC_PPAPI_VERSION_LABEL, 103002},
       {IDC_PPAPI_VERSION, 102002}},
      WithNotice({{IDC_BROWSING_DATA_HEADING, 51100},
                  {IDC_BROWSING_DATA_EXPLANATION, 51101},
                  {IDC_ADVANCED_DELETE_ALL, 11006},
                  {IDC_DEVELOPER_HEADING, 51400},
                  {IDC_DEVELOPER_EXPLANATION, 51401},
                  {IDC_TRUSTED_LOCATIONS, 51402},
                  {IDC_PROTECTED_HEADING, 41100},
                  {IDC_PROTECTED_EXPLANATION, 41101},
                  {IDC_PROTECTED_HELP_LINK, 41102, true},
                  {IDC_DEAUTHORIZE, 41103}}),
  };
  ASSERT_EQ(app.TabCount(), static_cast<int>(pages.size()));
  for (size_t tab = 0; tab < pages.size(); ++tab) {
    HWND page = app.SelectTab(static_cast<int>(tab));
    ASSERT_NE(page, nullptr) << tab;
    for (const ControlText& expected : pages[tab]) {
      const char* utf8 = strings.GetString(expected.textId);
      ASSERT_NE(utf8, nullptr) << expected.textId;
      std::wstring text = ToUtf16(utf8).value_or(L"");
      if (expected.link) text = L"<a>" + text + L"</a>";
      std::wstring shown = WindowText(GetDlgItem(page, expected.controlId));
      // The layout may break a long link between words.
      if (expected.link) std::replace(shown.begin(), shown.end(), L'\n', L' ');
      EXPECT_EQ(shown, text) << "tab " << tab << " control " << expected.controlId;
    }
  }
}

TEST_F(SheetTest, PagesShowWhatIsStoredAndReadItAgainOnEveryActivation) {
  ASSERT_TRUE(profile.SetGlobal(SettingValue::Number("defaultklimit", -1.0)));
  ASSERT_TRUE(profile.SetGlobal(SettingValue::Boolean("defaultalways", true)));
  ASSERT_TRUE(profile.SetGlobal(SettingValue::Boolean("disallowP2PUplink", true)));
  ASSERT_TRUE(app.Start());
  HWND storage = app.CurrentPage();
  EXPECT_TRUE(IsChecked(storage, IDC_STORAGE_BLOCK));
  EXPECT_FALSE(IsChecked(storage, IDC_STORAGE_ALLOW));
  HWND camera = app.SelectTab(1);
  EXPECT_TRUE(IsChecked(camera, IDC_CAMERA_MIC_BLOCK));
  HWND playback = app.SelectTab(2);
  EXPECT_TRUE(IsChecked(playback, IDC_P2P_BLOCK));
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(playback, IDC_P2P_BY_SITE)));

  // Scribble over the controls from outside; a return to each tab shows the stored values.
  SendMessageW(GetDlgItem(storage, IDC_STORAGE_BLOCK), BM_SETCHECK, BST_UNCHECKED, 0);
  SendMessageW(GetDlgItem(storage, IDC_STORAGE_ASK), BM_SETCHECK, BST_CHECKED, 0);
  SendMessageW(GetDlgItem(camera, IDC_CAMERA_MIC_BLOCK), BM_SETCHECK, BST_UNCHECKED, 0);
  SendMessageW(GetDlgItem(playback, IDC_P2P_BLOCK), BM_SETCHECK, BST_UNCHECKED, 0);
  EnableWindow(GetDlgItem(playback, IDC_P2P_BY_SITE), TRUE);

  storage = app.SelectTab(0);
  EXPECT_TRUE(IsChecked(storage, IDC_STORAGE_BLOCK));
  EXPECT_FALSE(IsChecked(storage, IDC_STORAGE_ASK));
  camera = app.SelectTab(1);
  EXPECT_TRUE(IsChecked(camera, IDC_CAMERA_MIC_BLOCK));
  playback = app.SelectTab(2);
  EXPECT_TRUE(IsChecked(playback, IDC_P2P_BLOCK));
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(playback, IDC_P2P_BY_SITE)));
}

TEST_F(SheetTest, StorageShowsAskForALimitOfZeroAndAllowForAnyOtherValue) {
  ASSERT_TRUE(profile.SetGlobal(SettingValue::Number("defaultklimit", 0.0)));
  ASSERT_TRUE(app.Start());
  EXPECT_TRUE(IsChecked(app.CurrentPage(), IDC_STORAGE_ASK));
  ASSERT_TRUE(profile.SetGlobal(SettingValue::Number("defaultklimit", 10.0)));
  ASSERT_TRUE(app.Start());
  EXPECT_TRUE(IsChecked(app.CurrentPage(), IDC_STORAGE_ALLOW));
}

TEST_F(SheetTest, AdministratorLocksCameraAndMicOnBlockWithoutChangingTheSetting) {
  ASSERT_TRUE(profile.WriteAdminConfig("AVHardwareDisable=1\r\n"));
  ASSERT_TRUE(app.Start(L"startupdialog=cammic"));
  HWND camera = app.CurrentPage();
  EXPECT_TRUE(IsChecked(camera, IDC_CAMERA_MIC_BLOCK));
  for (int id :
       {IDC_CAMERA_MIC_HEADING, IDC_CAMERA_MIC_ASK, IDC_CAMERA_MIC_BLOCK, IDC_CAMERA_MIC_BY_SITE}) {
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(camera, id))) << id;
  }
  // The lock is shown at start only; a return to the tab shows the stored Ask, still locked.
  app.SelectTab(0);
  camera = app.SelectTab(1);
  EXPECT_TRUE(IsChecked(camera, IDC_CAMERA_MIC_ASK));
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(camera, IDC_CAMERA_MIC_ASK)));
}

TEST_F(SheetTest, UpdatesPageOnlyInformsInChromeMode) {
  profile.AddPlayer(PlayerKind::Npapi, L"32.0.0.465");
  ASSERT_TRUE(profile.WriteAdminConfig("AutoUpdateDisable=1\r\n"));
  ASSERT_TRUE(app.Start(L"startupdialog=advanced"));
  HWND updates = app.CurrentPage();
  EXPECT_TRUE(IsChecked(updates, IDC_UPDATES_NEVER));
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(updates, IDC_UPDATES_CHECK_NOW)));

  ASSERT_TRUE(app.Start(L"startupdialog=advanced mode=chrome"));
  updates = app.CurrentPage();
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
  EXPECT_EQ(ExtendedStyle(app.sheet()) & WS_EX_LAYOUTRTL, sheetStyle);
  EXPECT_EQ(ExtendedStyle(app.tabs()) & kRightToLeftStyles, controlStyles);
  ASSERT_EQ(app.TabCount(), 5);
  for (int tab = 0; tab < 5; ++tab) {
    EXPECT_EQ(ExtendedStyle(app.SelectTab(tab)) & kRightToLeftStyles, controlStyles) << tab;
  }
}

TEST(ProgramResourcesTest, ManifestAsksForCommonControlsSix) {
  HMODULE module = LoadLibraryExW(AppPath().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
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

TEST(ProgramResourcesTest, TheProgramRegistersTheControlClassesItUses) {
  for (DWORD flag : {DWORD{ICC_LINK_CLASS}, DWORD{ICC_LISTVIEW_CLASSES}, DWORD{ICC_TAB_CLASSES},
                     DWORD{ICC_STANDARD_CLASSES}}) {
    EXPECT_EQ(kCommonControlClasses & flag, flag) << std::hex << flag;
  }
}

}  // namespace
