// The real program worked with the keyboard alone: key presses go in as a user's would, through
// the system's input queue, and the focus and the files are checked after each.
#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "app_driver.h"
#include "dialogs/site_list_ids.h"
#include "dialogs/trusted_locations_ids.h"
#include "pages/advanced_page_ids.h"
#include "pages/camera_mic_page_ids.h"
#include "pages/playback_page_ids.h"
#include "pages/storage_page_ids.h"
#include "platform/win32/utf16.h"
#include "settings/settings_manager.h"
#include "ui_profile.h"

namespace {

const std::string kMasterDomain = SMSettingsManager::MasterDomain();

INPUT KeyInput(WORD key, wchar_t letter, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = letter;
  input.ki.dwFlags = flags;
  return input;
}

// Presses the keys one after the other, holding each (Shift, Control) until the last is
// pressed, and lets them go in reverse.
void PressKeys(std::initializer_list<WORD> keys) {
  std::vector<INPUT> inputs;
  for (WORD key : keys) inputs.push_back(KeyInput(key, 0, 0));
  for (auto key = std::rbegin(keys); key != std::rend(keys); ++key) {
    inputs.push_back(KeyInput(*key, 0, KEYEVENTF_KEYUP));
  }
  SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

void TypeText(const std::wstring& text) {
  std::vector<INPUT> inputs;
  for (wchar_t letter : text) {
    inputs.push_back(KeyInput(0, letter, KEYEVENTF_UNICODE));
    inputs.push_back(KeyInput(0, letter, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP));
  }
  SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

std::string Describe(HWND control) {
  wchar_t className[64] = {};
  GetClassNameW(control, className, 64);
  return std::to_string(GetDlgCtrlID(control)) + " " + ToUtf8(className).value_or("?") + " \"" +
         ToUtf8(WindowText(control).substr(0, 30)).value_or("?") + "\"";
}

std::string Describe(const std::vector<HWND>& controls) {
  std::string text;
  for (HWND control : controls) text += "\n  " + Describe(control);
  return text;
}

bool IsRadio(HWND control) {
  const LONG type = GetWindowLongW(control, GWL_STYLE) & BS_TYPEMASK;
  return (SendMessageW(control, WM_GETDLGCODE, 0, 0) & DLGC_RADIOBUTTON) != 0 &&
         (type == BS_AUTORADIOBUTTON || type == BS_RADIOBUTTON);
}

// What Tab must reach inside a dialog or page, in window order: every visible, enabled control
// with a tab stop and, of each group of radio buttons, the checked one (the first when none is).
void CollectTabStops(HWND container, std::vector<HWND>& stops) {
  std::vector<HWND> group;
  auto closeGroup = [&] {
    if (group.empty()) return;
    auto checked = std::find_if(group.begin(), group.end(), [](HWND radio) {
      return SendMessageW(radio, BM_GETCHECK, 0, 0) == BST_CHECKED;
    });
    stops.push_back(checked != group.end() ? *checked : group.front());
    group.clear();
  };
  for (HWND child = GetWindow(container, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    const LONG style = GetWindowLongW(child, GWL_STYLE);
    if (!IsRadio(child) || (style & WS_GROUP) != 0) closeGroup();
    if (!IsWindowVisible(child) || !IsWindowEnabled(child)) continue;
    if ((GetWindowLongW(child, GWL_EXSTYLE) & WS_EX_CONTROLPARENT) != 0) {
      CollectTabStops(child, stops);
    } else if (IsRadio(child)) {
      group.push_back(child);
    } else if ((style & WS_TABSTOP) != 0) {
      stops.push_back(child);
    }
  }
  closeGroup();
}

// The controls the focus visits under a key (Tab or Shift+Tab) from the one it is on until it
// comes back there; stops early when the focus does not move or leaves the window.
std::vector<HWND> FocusCycle(HWND window, std::initializer_list<WORD> keys) {
  std::vector<HWND> cycle{FocusOfThread(window)};
  for (int step = 0; step < 40; ++step) {
    HWND before = FocusOfThread(window);
    PressKeys(keys);
    if (!WaitFor([&] { return FocusOfThread(window) != before; })) break;
    HWND now = FocusOfThread(window);
    if (now == cycle.front()) return cycle;
    if (std::find(cycle.begin(), cycle.end(), now) != cycle.end()) break;
    cycle.push_back(now);
  }
  cycle.push_back(nullptr);  // never came back: fails every comparison
  return cycle;
}

// a comes before b when reading the window from left to right, row by row.
bool ReadsBefore(HWND a, HWND b) {
  RECT first{};
  RECT second{};
  GetWindowRect(a, &first);
  GetWindowRect(b, &second);
  if (first.bottom <= second.top) return true;
  if (second.bottom <= first.top) return false;
  return first.left < second.left;
}

// Tab visits every tab stop and nothing else, in reading order from the first of them; Shift+Tab
// visits the same ones backwards.
void ExpectTabOrder(HWND window, const std::string& name) {
  std::vector<HWND> expected;
  CollectTabStops(window, expected);
  ASSERT_GT(expected.size(), 1u) << name;
  SendMessageW(window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(expected.front()), TRUE);
  ASSERT_TRUE(WaitFor([&] { return FocusOfThread(window) == expected.front(); })) << name;
  std::vector<HWND> forwards = FocusCycle(window, {VK_TAB});
  EXPECT_EQ(forwards, expected) << name << ": Tab went" << Describe(forwards) << "\nexpected"
                                << Describe(expected);
  // Read from the control a reader meets first, the cycle goes on in reading order.
  std::vector<HWND> reading = forwards;
  std::rotate(reading.begin(), std::min_element(reading.begin(), reading.end(), ReadsBefore),
              reading.end());
  for (size_t index = 1; index < reading.size(); ++index) {
    EXPECT_FALSE(ReadsBefore(reading[index], reading[index - 1]))
        << name << ": Tab goes back from " << Describe(reading[index - 1]) << " to "
        << Describe(reading[index]);
  }
  std::vector<HWND> backwards = FocusCycle(window, {VK_SHIFT, VK_TAB});
  std::reverse(backwards.begin() + 1, backwards.end());
  EXPECT_EQ(backwards, forwards) << name << ": Shift+Tab went, in reverse," << Describe(backwards);
}

class KeyboardTest : public ::testing::Test {
 protected:
  void SetUp() override {
    profile.AddPlayer(PlayerKind::Npapi, L"32.0.0.465");
    ASSERT_TRUE(profile.AddSites({"alpha.example", "beta.example", "bravo.example"}));
    SettingArray trusted;
    trusted.Append(SettingValue::Boolean("C:\\dev", true));
    ASSERT_TRUE(profile.SetGlobal(SettingValue::Array("trustedPaths", trusted)));
    ASSERT_TRUE(app.Start(L"startupdialog=storage"));
    SetForegroundWindow(app.sheet());
    ASSERT_TRUE(WaitFor([&] { return GetForegroundWindow() == app.sheet(); }));
  }

  // Opens a page's dialog with the button, as Space on the button would.
  HWND Open(HWND owner, int buttonId) {
    Click(owner, buttonId);
    return app.WaitForDialog([&](HWND window) { return window != owner; });
  }

  // Escape closes the dialog.
  void Escape(HWND dialog, const std::string& name) {
    PressKeys({VK_ESCAPE});
    EXPECT_TRUE(WaitFor([&] { return !IsWindow(dialog); })) << name << " stays after Escape";
  }

  UiProfile profile;
  AppUnderTest app;
};

// Every page and dialog in tab order, and Escape closes each dialog.
TEST_F(KeyboardTest, TabReachesEveryControlInOrderAndEscapeClosesEveryDialog) {
  struct DialogCase {
    int tab;
    int buttonId;
    const char* name;
    int nestedButtonId;  // a dialog the dialog opens, or 0
  };
  const DialogCase dialogs[] = {
      {0, IDC_STORAGE_BY_SITE, "storage by site", IDC_SITE_LIST_ADD},
      {0, IDC_STORAGE_DELETE_ALL, "clear data", 0},
      {1, IDC_CAMERA_MIC_BY_SITE, "camera and microphone by site", 0},
      {2, IDC_P2P_BY_SITE, "peer networking by site", 0},
      {4, IDC_TRUSTED_LOCATIONS, "trusted locations", IDC_TRUSTED_ADD},
  };
  for (int tab = 0; tab < app.TabCount(); ++tab) {
    app.SelectTab(tab);
    ExpectTabOrder(app.sheet(), "page " + std::to_string(tab));
  }
  for (const DialogCase& dialogCase : dialogs) {
    HWND dialog = Open(app.SelectTab(dialogCase.tab), dialogCase.buttonId);
    ASSERT_NE(dialog, nullptr) << dialogCase.name;
    ExpectTabOrder(dialog, dialogCase.name);
    if (dialogCase.nestedButtonId != 0) {
      HWND nested = Open(dialog, dialogCase.nestedButtonId);
      ASSERT_NE(nested, nullptr) << dialogCase.name;
      ExpectTabOrder(nested, std::string(dialogCase.name) + ", add");
      Escape(nested, std::string(dialogCase.name) + ", add");
    }
    Escape(dialog, dialogCase.name);
  }
  EXPECT_EQ(profile.StoredNames(kMasterDomain, "domains"),
            (std::vector<std::string>{"alpha.example", "beta.example", "bravo.example"}));
}

// Typing a site's first letters and F2 on a trusted location. (Enter on the add dialogs is the
// dialog manager's IDOK, which the site list and trusted locations tests press.)
TEST_F(KeyboardTest, KeysWorkTheControls) {
  HWND sites = Open(app.SelectTab(0), IDC_STORAGE_BY_SITE);
  ASSERT_NE(sites, nullptr);
  HWND list = GetDlgItem(sites, IDC_SITE_LIST_VIEW);

  // Typing a site's first letters selects it, from the row after the focused one onwards.
  SendMessageW(sites, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(list), TRUE);
  TypeText(L"BR");
  EXPECT_TRUE(WaitFor([&] { return ListSelectedRows(list) == std::vector<int>{2}; }))
      << "\"BR\" should select bravo.example";
  Escape(sites, "storage by site");

  // Trusted locations: F2 edits the focused row.
  HWND trusted = Open(app.SelectTab(4), IDC_TRUSTED_LOCATIONS);
  ASSERT_NE(trusted, nullptr);
  HWND locations = GetDlgItem(trusted, IDC_TRUSTED_LIST);
  SendMessageW(trusted, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(locations), TRUE);
  PressKeys({VK_HOME});
  ASSERT_TRUE(WaitFor([&] { return ListSelectedRows(locations) == std::vector<int>{0}; }));
  PressKeys({VK_F2});
  // Keys pressed before the edit box has the focus go to the list: wait for it, and for the
  // typed text to arrive, before Enter.
  HWND edit = nullptr;
  ASSERT_TRUE(WaitFor([&] {
    edit = reinterpret_cast<HWND>(SendMessageW(locations, LVM_GETEDITCONTROL, 0, 0));
    return edit != nullptr && FocusOfThread(trusted) == edit;
  })) << "F2 did not edit the location";
  PressKeys({VK_END});
  TypeText(L"\\game");
  ASSERT_TRUE(WaitFor([&] { return WindowText(edit) == L"C:\\dev\\game"; }));
  PressKeys({VK_RETURN});
  // The row shows the new path only after the program wrote it. The file is read after that:
  // a read while the program replaces the file would make its write fail.
  EXPECT_TRUE(WaitFor([&] { return ListRowText(locations, 0) == L"C:\\dev\\game"; }));
  EXPECT_EQ(profile.StoredNames(kMasterDomain, "trustedPaths"),
            std::vector<std::string>{"C:\\dev\\game"});
  Escape(trusted, "trusted locations");
}

}  // namespace
