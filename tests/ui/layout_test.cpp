// Opens every page and dialog of the real program in the language this process was started
// with, checks that no text is cut off, no control lies outside its parent or over another and
// the pages show the string table's texts, and saves a picture of each. One language per process:
// the program takes its interface language from the locale it starts with, and the driver's is the
// same.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "app_driver.h"
#include "dialogs/site_list_ids.h"
#include "dialogs/trusted_locations_ids.h"
#include "l10n/string_data.h"
#include "l10n/string_table.h"
#include "layout_check.h"
#include "pages/advanced_page_ids.h"
#include "pages/camera_mic_page_ids.h"
#include "pages/playback_page_ids.h"
#include "pages/storage_page_ids.h"
#include "platform/win32/utf16.h"
#include "ui_profile.h"
#include "window_shot.h"

namespace {

const char* const kPageNames[] = {"storage", "camera-and-mic", "playback", "updates", "advanced"};

// A dialog opened by a button, and the dialogs its own buttons open.
struct DialogCase {
  int buttonId;
  const char* name;
  std::vector<DialogCase> nested;
};

// The dialogs each tab's buttons open.
const std::pair<int, DialogCase> kDialogs[] = {
    {0, {IDC_STORAGE_BY_SITE, "storage-by-site", {{IDC_SITE_LIST_ADD, "add-site", {}}}}},
    {0, {IDC_STORAGE_DELETE_ALL, "clear-data", {}}},
    {1, {IDC_CAMERA_MIC_BY_SITE, "camera-and-mic-by-site", {}}},
    {2, {IDC_P2P_BY_SITE, "peer-networking-by-site", {}}},
    {4, {IDC_TRUSTED_LOCATIONS, "trusted-locations", {{IDC_TRUSTED_ADD, "add-location", {}}}}},
};

class LayoutTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* name = std::getenv("VP_LAYOUT_LANGUAGE");
    language_ = name != nullptr ? name : "en-US";
    const char* scale = std::getenv("VP_WINE_DPI");
    dotsPerInch_ = scale != nullptr ? std::atoi(scale) : 96;
    std::string folder = language_;
    if (dotsPerInch_ != 96) {
      const std::string scaleName = std::to_string(dotsPerInch_) + "dpi";
      folder.append("-").append(scaleName);
      language_.append(" at ").append(scaleName);
    }
    shots_ = WindowsPath(VP_LAYOUT_SHOTS_DIR L"/") + ToUtf16(folder).value_or(L"unknown");
    CreateDirectoryW(WindowsPath(VP_LAYOUT_SHOTS_DIR).c_str(), nullptr);
    CreateDirectoryW(shots_.c_str(), nullptr);
  }

  // Checks one page or dialog and saves its picture (of the whole sheet for a page).
  void Inspect(HWND container, HWND pictured, const std::string& name) {
    SendMessageW(container, WM_NULL, 0, 0);
    std::string problems;
    for (const std::string& line : LayoutProblems(container)) problems += "\n  " + line;
    EXPECT_EQ(problems, "") << language_ << " " << name;
    std::wstring file = shots_ + L"\\" + ToUtf16(name).value_or(L"") + L".png";
    EXPECT_TRUE(SaveWindowPng(pictured, file)) << ToUtf8(file).value_or("?");
  }

  // Every text a page shows is a text of the string table in this language, or paragraphs of
  // such texts; a long link may be broken between words.
  void ExpectTableTexts(HWND page, const std::string& name) {
    static const std::set<std::wstring> known = [] {
      std::set<std::wstring> texts;
      for (int row = 0; row < kStringCount; ++row)
        texts.insert(UserText(static_cast<TextId>(kStringIndex[row].id)));
      return texts;
    }();
    const std::vector<std::wstring> texts = ShownTexts(page);
    EXPECT_GT(texts.size(), 3u) << name;
    for (const std::wstring& text : texts) {
      // Version numbers come from the registry.
      if (!text.empty() && iswdigit(text[0])) continue;
      for (size_t start = 0; start <= text.size();) {
        size_t end = std::min(text.find(L"\n\n", start), text.size());
        std::wstring paragraph = text.substr(start, end - start);
        std::replace(paragraph.begin(), paragraph.end(), L'\n', L' ');
        EXPECT_TRUE(known.contains(paragraph))
            << language_ << " " << name << ": " << ToUtf8(paragraph).value_or("?");
        start = end + 2;
      }
    }
  }

  // Clicks the button, waits for the dialog it opens, inspects it and what it opens, closes it.
  void InspectDialog(HWND owner, const DialogCase& dialogCase) {
    ASSERT_NE(GetDlgItem(owner, dialogCase.buttonId), nullptr) << dialogCase.name;
    Click(owner, dialogCase.buttonId);
    HWND dialog = app_.WaitForDialog([&](HWND window) { return window != owner; });
    ASSERT_NE(dialog, nullptr) << "the dialog " << dialogCase.name << " did not open";
    Inspect(dialog, dialog, dialogCase.name);
    for (const DialogCase& nested : dialogCase.nested) InspectDialog(dialog, nested);
    PostMessageW(dialog, WM_CLOSE, 0, 0);
    ASSERT_TRUE(WaitFor([&] { return !IsWindow(dialog); }))
        << "the dialog " << dialogCase.name << " did not close";
  }

  std::string language_;
  int dotsPerInch_ = 96;
  std::wstring shots_;
  UiProfile profile_;
  AppUnderTest app_;
};

TEST_F(LayoutTest, EveryPageAndDialogFitsItsTexts) {
  // A run that silently fell back to English would prove nothing about the other columns.
  const char* column = std::getenv("VP_LAYOUT_COLUMN");
  ASSERT_NE(column, nullptr) << "VP_LAYOUT_COLUMN names the column this locale must select";
  ASSERT_EQ(StringTableLanguageFor(GetUserDefaultUILanguage()), std::atoi(column))
      << "the locale did not select the language " << language_;
  // Nor would a run at another scale than the one asked for.
  HDC screen = GetDC(nullptr);
  ASSERT_EQ(GetDeviceCaps(screen, LOGPIXELSX), dotsPerInch_) << "the prefix's display scale";
  ReleaseDC(nullptr, screen);

  // Both plug-ins, so that the Updates page is there with both version lines; a few sites.
  profile_.AddPlayer(PlayerKind::Npapi, L"32.0.0.465");
  profile_.AddPlayer(PlayerKind::Ppapi, L"32.0.0.466");
  ASSERT_TRUE(profile_.AddSites({"www.example.com", "media.example.org", "localhost"}));
  ASSERT_TRUE(app_.Start(L"startupdialog=storage"));
  ASSERT_EQ(app_.TabCount(), 5);

  for (int tab = 0; tab < 5; ++tab) {
    HWND page = app_.SelectTab(tab);
    ASSERT_NE(page, nullptr) << kPageNames[tab];
    Inspect(page, app_.sheet(), std::to_string(tab + 1) + "-" + kPageNames[tab]);
    ExpectTableTexts(page, kPageNames[tab]);
  }
  for (const auto& [tab, dialog] : kDialogs) InspectDialog(app_.SelectTab(tab), dialog);
}

}  // namespace
