#pragma once

// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Starts VantrelPlayerApp.exe in the test's Wine prefix and finds its sheet. Every process it
// starts it also ends, by its own handle.
class AppUnderTest {
 public:
  AppUnderTest() = default;
  ~AppUnderTest();
  AppUnderTest(const AppUnderTest&) = delete;
  AppUnderTest& operator=(const AppUnderTest&) = delete;

  // Starts the program with the arguments after its path and waits for its sheet; false (with a
  // reason) when it did not appear. The program inherits the driver's locale.
  bool Start(const std::wstring& arguments, std::string* reason);
  // Closes the sheet, waits for the process, and ends it if it does not go by itself.
  void Stop();

  HWND sheet() const { return sheet_; }
  HWND tabs() const;
  int TabCount() const;
  int CurrentTab() const;
  HWND CurrentPage() const;
  // Selects a tab as a click would (the page gets PSN_SETACTIVE) and returns its page window.
  HWND SelectTab(int index) const;

 private:
  PROCESS_INFORMATION process_{};
  HWND sheet_ = nullptr;
};

// A text of the string table in the driver's language, which the program also picks.
std::wstring UserText(uint32_t id);
// A visible dialog window of the process that accept() takes, or null.
HWND FindDialogOfProcess(DWORD processId, const std::function<bool(HWND)>& accept);
// The built program, as the driver sees it inside Wine.
std::wstring AppPath();
std::wstring WindowText(HWND window);
LONG ExtendedStyle(HWND window);
bool IsChecked(HWND page, int controlId);

// List views of the program, driven from the test's process: messages that carry a pointer get
// one into memory allocated inside the program's process.
int ListRowCount(HWND list);
std::wstring ListRowText(HWND list, int row, int column = 0);
std::vector<std::wstring> ListRows(HWND list);
// Selects exactly these rows.
void SelectListRows(HWND list, const std::vector<int>& rows);
// Starts editing a row's label, replaces the text and ends the edit with Enter, as a user
// would; false when the list did not start an edit.
bool EditListRow(HWND list, int row, const std::wstring& text);
