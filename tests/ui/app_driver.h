#pragma once

// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "l10n/text_id.h"

// Starts VantrelPlayerApp.exe in the test's Wine prefix and finds its sheet. Every process it
// starts it also ends, by its own handle.
class AppUnderTest {
 public:
  AppUnderTest() = default;
  ~AppUnderTest();
  AppUnderTest(const AppUnderTest&) = delete;
  AppUnderTest& operator=(const AppUnderTest&) = delete;

  // Starts the program with the arguments after its path and waits for its sheet; a failure
  // says why (the start error and its attempts, the exit status, or no sheet in time). Use as
  // ASSERT_TRUE(app.Start(...)) so that a test without a sheet ends at once. A program started
  // before is stopped first. The program inherits the driver's locale.
  [[nodiscard]] ::testing::AssertionResult Start(const std::wstring& arguments = L"");
  // Closes the sheet; ends the process if it does not go by itself.
  void Stop();

  HWND sheet() const { return sheet_; }
  HWND tabs() const;
  int TabCount() const;
  HWND CurrentPage() const;
  // As a click would (the page gets PSN_SETACTIVE); returns the page.
  HWND SelectTab(int index) const;

  // A visible dialog of the program other than its sheet (a modal dialog or a message box)
  // that accept() takes, waiting for it up to the wait limit; null when none came.
  HWND WaitForDialog(const std::function<bool(HWND)>& accept) const;

 private:
  PROCESS_INFORMATION process_{};
  HWND sheet_ = nullptr;
};

// Polls until the condition holds or the wait limit (scaled by VP_TIMEOUT_SCALE) passes; the
// program works on its own thread.
bool WaitFor(const std::function<bool()>& condition);

std::function<bool(HWND)> WithCaption(const std::wstring& caption);

// Clicks a button of a dialog and returns once the program has handled the click, or is showing
// the modal window the click opened (posted, so that such a window does not block the driver).
void Click(HWND dialog, int controlId);
// Clicks a button of a message box or modal dialog (IDOK, IDCANCEL, IDYES, ...) and waits for
// the window to go; false when it stays.
[[nodiscard]] bool Answer(HWND dialog, int buttonId);

// A text of the string table in the driver's language, which the program also picks.
std::wstring UserText(TextId id);
// A path of the build machine as programs inside Wine see it.
std::wstring WindowsPath(std::wstring path);
std::wstring WindowText(HWND window);
bool IsChecked(HWND page, int controlId);

// List views of the program, driven from the test's process: messages that carry a pointer get
// one into memory allocated inside the program's process.
int ListRowCount(HWND list);
std::wstring ListRowText(HWND list, int row, int column = 0);
std::vector<std::wstring> ListRows(HWND list, int column = 0);
// The heading of a column.
std::wstring ListColumnText(HWND list, int column);
// Adds these rows to the selection.
void SelectListRows(HWND list, const std::vector<int>& rows);
// Starts editing a row's label, replaces the text and ends the edit with Enter, as a user
// would; false when the list did not start an edit.
bool EditListRow(HWND list, int row, const std::wstring& text);
std::vector<int> ListSelectedRows(HWND list);
// Picks a combo item as the user does: the selection, then CBN_SELCHANGE to the dialog.
void ChooseComboItem(HWND dialog, int comboId, int item);
// The window that has the keyboard focus in the thread that owns window.
HWND FocusOfThread(HWND window);
