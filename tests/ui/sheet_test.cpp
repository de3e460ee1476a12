// Drives the real program under Wine: its sheet, tabs and page controls, seen from outside the
// process through window messages.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "app/shell_resource_ids.h"
#include "app_driver.h"
#include "l10n/string_data.h"
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

TEST_F(SheetTest, TabsFollowTheInstalledPlayers) {
  ASSERT_TRUE(app.Start());
  EXPECT_EQ(app.TabCount(), 4) << "no player";

  profile.AddPlayer(PlayerKind::Npapi, L"32.0.0.465");
  ASSERT_TRUE(app.Start());
  EXPECT_EQ(app.TabCount(), 5) << "a plain NPAPI player";
  // The fourth tab is the Updates page and shows the player's version.
  HWND updates = app.SelectTab(3);
  EXPECT_EQ(WindowText(GetDlgItem(updates, IDC_NPAPI_VERSION)), L"32.0.0.465");
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

// The page's visible controls that show a text (not a picture).
std::vector<HWND> TextControls(HWND page) {
  std::vector<HWND> controls;
  EnumChildWindows(
      page,
      [](HWND child, LPARAM found) -> BOOL {
        wchar_t className[32] = {};
        GetClassNameW(child, className, 32);
        const std::wstring kind = className;
        // Icons, bitmaps, rules and frames are statics without a text.
        const LONG type = GetWindowLongW(child, GWL_STYLE) & SS_TYPEMASK;
        const bool textStatic = kind == L"Static" && (type <= SS_RIGHT || type == SS_SIMPLE ||
                                                      type == SS_LEFTNOWORDWRAP);
        if (IsWindowVisible(child) && (textStatic || kind == L"Button" || kind == WC_LINK)) {
          reinterpret_cast<std::vector<HWND>*>(found)->push_back(child);
        }
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&controls));
  return controls;
}

// Run in English and in Hebrew: every text a page shows is a text of the string table in the
// program's language, or paragraphs of such texts, links wrapped as links.
TEST_F(SheetTest, EveryPageShowsTheStringTablesTexts) {
  profile.AddPlayer(PlayerKind::Npapi, L"32.0.0.465");
  ASSERT_TRUE(app.Start());
  std::set<std::wstring> known;
  for (int row = 0; row < kStringCount; ++row) known.insert(UserText(kStringIndex[row].id));
  ASSERT_EQ(app.TabCount(), 5);
  for (int tab = 0; tab < 5; ++tab) {
    const std::vector<HWND> controls = TextControls(app.SelectTab(tab));
    EXPECT_GT(controls.size(), 3u) << tab;
    for (HWND control : controls) {
      std::wstring text = WindowText(control);
      // Version numbers come from the registry.
      if (!text.empty() && iswdigit(text[0])) continue;
      for (size_t start = 0; start <= text.size();) {
        size_t end = std::min(text.find(L"\n\n", start), text.size());
        std::wstring paragraph = text.substr(start, end - start);
        for (const wchar_t* tag : {L"<a>", L"</a>"}) {
          for (size_t at; (at = paragraph.find(tag)) != std::wstring::npos;) {
            paragraph.erase(at, wcslen(tag));
          }
        }
        // The layout may break a long link between words.
        std::replace(paragraph.begin(), paragraph.end(), L'\n', L' ');
        EXPECT_TRUE(known.contains(paragraph))
            << "tab " << tab << " control " << GetDlgCtrlID(control) << ": "
            << ToUtf8(paragraph).value_or("?");
        start = end + 2;
      }
    }
  }
}

TEST_F(SheetTest, PagesShowWhatIsStoredAndReadItAgainOnEveryActivation) {
  ASSERT_TRUE(profile.SetGlobal(SettingValue::Number("defaultklimit", -1.0)));
  ASSERT_TRUE(profile.SetGlobal(SettingValue::Boolean("defaultalways", true)));
  ASSERT_TRUE(profile.SetGlobal(SettingValue::Boolean("disallowP2PUplink", true)));
  ASSERT_TRUE(app.Start());
  struct Shown {
    int tab;
    int block;
    int ask;
  };
  const Shown pages[] = {{0, IDC_STORAGE_BLOCK, IDC_STORAGE_ASK},
                         {1, IDC_CAMERA_MIC_BLOCK, IDC_CAMERA_MIC_ASK},
                         {2, IDC_P2P_BLOCK, IDC_P2P_ASK}};
  // Each round scribbles over the controls from outside; the next visit to each tab shows the
  // stored values again.
  for (int round = 0; round < 2; ++round) {
    for (const Shown& shown : pages) {
      HWND page = app.SelectTab(shown.tab);
      EXPECT_TRUE(IsChecked(page, shown.block)) << "tab " << shown.tab << " round " << round;
      EXPECT_FALSE(IsChecked(page, shown.ask)) << "tab " << shown.tab << " round " << round;
      SendMessageW(GetDlgItem(page, shown.block), BM_SETCHECK, BST_UNCHECKED, 0);
      SendMessageW(GetDlgItem(page, shown.ask), BM_SETCHECK, BST_CHECKED, 0);
    }
    HWND bySite = GetDlgItem(app.CurrentPage(), IDC_P2P_BY_SITE);
    EXPECT_FALSE(IsWindowEnabled(bySite)) << "round " << round;
    EnableWindow(bySite, TRUE);
  }
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
  // The lock is shown at start only; a return to the tab shows the stored Ask, still locked.
  app.SelectTab(0);
  camera = app.SelectTab(1);
  EXPECT_TRUE(IsChecked(camera, IDC_CAMERA_MIC_ASK));
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(camera, IDC_CAMERA_MIC_ASK)));
}

TEST_F(SheetTest, UpdatesPageOnlyInformsInChromeMode) {
  profile.AddPlayer(PlayerKind::Npapi, L"32.0.0.465");
  ASSERT_TRUE(profile.WriteAdminConfig({{"AutoUpdateDisable", "1"}}));
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

}  // namespace
