#include "app_driver.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <thread>

#include "l10n/string_table.h"
#include "platform/win32/utf16.h"
#include "platform/win32/win32_system.h"
#include "support/process_runner.h"

namespace {

constexpr auto kAppearLimit = std::chrono::seconds(20);
constexpr auto kWaitLimit = std::chrono::seconds(10);
constexpr auto kCloseLimit = std::chrono::seconds(5);

// A visible dialog window of the process that accept() takes, or null.
HWND FindDialogOfProcess(DWORD processId, const std::function<bool(HWND)>& accept) {
  for (HWND window = FindWindowExW(nullptr, nullptr, L"#32770", nullptr); window != nullptr;
       window = FindWindowExW(nullptr, window, L"#32770", nullptr)) {
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner == processId && IsWindowVisible(window) && accept(window)) return window;
  }
  return nullptr;
}

// Waits until the program's thread has taken every message posted to it before this call: a
// marker posted behind them, a default-button id no control has, shows when it has been taken;
// the sheet's own default id is put back. A click's handler runs from its posted message, so once
// the marker is taken the handler has returned, its files written, or is showing a modal window.
// (Reading a settings file while the program replaces it would make the program's write fail.)
void WaitForPostedMessages(HWND window) {
  HWND top = GetAncestor(window, GA_ROOTOWNER);
  constexpr WORD kMarkerId = 0x7FF1;
  const LRESULT before = SendMessageW(top, DM_GETDEFID, 0, 0);
  PostMessageW(top, DM_SETDEFID, kMarkerId, 0);
  WaitFor(
      [&] { return !IsWindow(top) || LOWORD(SendMessageW(top, DM_GETDEFID, 0, 0)) == kMarkerId; });
  SendMessageW(top, DM_SETDEFID, HIWORD(before) == DC_HASDEFID ? LOWORD(before) : 0, 0);
}

// A block of memory inside the process that owns a window.
class RemoteBlock {
 public:
  RemoteBlock(HWND window, size_t bytes) {
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    process_ =
        OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, processId);
    if (process_ != nullptr) {
      address_ = VirtualAllocEx(process_, nullptr, bytes, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    }
  }
  ~RemoteBlock() {
    if (address_ != nullptr) VirtualFreeEx(process_, address_, 0, MEM_RELEASE);
    if (process_ != nullptr) CloseHandle(process_);
  }
  RemoteBlock(const RemoteBlock&) = delete;
  RemoteBlock& operator=(const RemoteBlock&) = delete;

  bool valid() const { return address_ != nullptr; }
  char* at(size_t offset) const { return static_cast<char*>(address_) + offset; }
  void Write(size_t offset, const void* data, size_t size) {
    WriteProcessMemory(process_, at(offset), data, size, nullptr);
  }
  void Read(size_t offset, void* data, size_t size) {
    ReadProcessMemory(process_, at(offset), data, size, nullptr);
  }

 private:
  HANDLE process_ = nullptr;
  void* address_ = nullptr;
};

// Longer than any path the tests store.
constexpr size_t kRowTextCapacity = 4096;

}  // namespace

bool WaitFor(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + ScaledTimeout(kWaitLimit);
  while (std::chrono::steady_clock::now() < deadline) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return condition();
}

std::function<bool(HWND)> WithCaption(const std::wstring& caption) {
  return [caption](HWND window) { return WindowText(window) == caption; };
}

void Click(HWND dialog, int controlId) {
  HWND button = GetDlgItem(dialog, controlId);
  const LONG type = GetWindowLongW(button, GWL_STYLE) & BS_TYPEMASK;
  if (button == nullptr || !IsWindowEnabled(button)) {
    // A disabled button takes no click.
  } else if (type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON) {
    // What a real click ends in. A posted BM_CLICK plays a press and a release with the mouse
    // captured in between, and Wine drawing the windows itself sometimes loses it.
    PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(controlId, BN_CLICKED),
                 reinterpret_cast<LPARAM>(button));
  } else {
    // Radio buttons and check boxes change their own state on a click.
    PostMessageW(button, BM_CLICK, 0, 0);
  }
  WaitForPostedMessages(dialog);
}

bool Answer(HWND dialog, int buttonId) {
  if (GetDlgItem(dialog, buttonId) == nullptr) return false;
  Click(dialog, buttonId);
  return WaitFor([&] { return !IsWindow(dialog); });
}

std::wstring UserText(TextId id) {
  Win32System system;
  SMUserLanguageStringTable strings(system);
  const char* text = strings.GetString(id);
  return text != nullptr ? ToUtf16(text).value_or(L"") : L"";
}

std::wstring WindowsPath(std::wstring path) {
  std::replace(path.begin(), path.end(), L'/', L'\\');
  return L"Z:" + path;
}

std::wstring WindowText(HWND window) {
  wchar_t text[4096] = {};
  SendMessageW(window, WM_GETTEXT, 4096, reinterpret_cast<LPARAM>(text));
  return text;
}

bool IsChecked(HWND page, int controlId) {
  return SendMessageW(GetDlgItem(page, controlId), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

AppUnderTest::~AppUnderTest() {
  Stop();
}

::testing::AssertionResult AppUnderTest::Start(const std::wstring& arguments) {
  Stop();
  std::wstring commandLine = L"\"" + WindowsPath(VP_APP_EXE_PATH) + L"\"";
  if (!arguments.empty()) commandLine += L" " + arguments;
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  StartResult start = StartProcess(commandLine, FALSE, 0, &startup, &process_);
  if (!start.started()) {
    process_ = PROCESS_INFORMATION{};
    return ::testing::AssertionFailure() << start.Describe();
  }
  // The caption in the language the program will pick: the driver's own.
  const std::wstring caption = UserText(TextId::kSheetCaption);
  const auto deadline = std::chrono::steady_clock::now() + ScaledTimeout(kAppearLimit);
  while (std::chrono::steady_clock::now() < deadline) {
    HWND found = FindDialogOfProcess(process_.dwProcessId, WithCaption(caption));
    if (found != nullptr) {
      sheet_ = found;
      // The sheet is created; let it finish its first page.
      SendMessageW(sheet_, WM_NULL, 0, 0);
      return ::testing::AssertionSuccess();
    }
    if (WaitForSingleObject(process_.hProcess, 50) == WAIT_OBJECT_0) {
      DWORD exitCode = 0;
      GetExitCodeProcess(process_.hProcess, &exitCode);
      Stop();
      return ::testing::AssertionFailure()
             << "the program ended with status " << exitCode << " before its sheet appeared";
    }
  }
  Stop();
  return ::testing::AssertionFailure()
         << "no sheet appeared within " << ScaledTimeout(kAppearLimit).count() << " ms";
}

void AppUnderTest::Stop() {
  if (process_.hProcess == nullptr) return;
  if (sheet_ != nullptr && IsWindow(sheet_)) PostMessageW(sheet_, WM_CLOSE, 0, 0);
  const auto closeLimit = static_cast<DWORD>(ScaledTimeout(kCloseLimit).count());
  if (WaitForSingleObject(process_.hProcess, closeLimit) != WAIT_OBJECT_0) {
    TerminateProcess(process_.hProcess, 1);
    WaitForSingleObject(process_.hProcess, INFINITE);
  }
  CloseHandle(process_.hThread);
  CloseHandle(process_.hProcess);
  process_ = PROCESS_INFORMATION{};
  sheet_ = nullptr;
}

HWND AppUnderTest::tabs() const {
  return reinterpret_cast<HWND>(SendMessageW(sheet_, PSM_GETTABCONTROL, 0, 0));
}

int AppUnderTest::TabCount() const {
  return static_cast<int>(SendMessageW(tabs(), TCM_GETITEMCOUNT, 0, 0));
}

HWND AppUnderTest::CurrentPage() const {
  return reinterpret_cast<HWND>(SendMessageW(sheet_, PSM_GETCURRENTPAGEHWND, 0, 0));
}

HWND AppUnderTest::SelectTab(int index) const {
  SendMessageW(sheet_, PSM_SETCURSEL, static_cast<WPARAM>(index), 0);
  return CurrentPage();
}

HWND AppUnderTest::WaitForDialog(const std::function<bool(HWND)>& accept) const {
  HWND found = nullptr;
  WaitFor([&] {
    found = FindDialogOfProcess(process_.dwProcessId,
                                [&](HWND window) { return window != sheet_ && accept(window); });
    return found != nullptr;
  });
  return found;
}

int ListRowCount(HWND list) {
  return static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
}

std::wstring ListRowText(HWND list, int row, int column) {
  RemoteBlock block(list, sizeof(LVITEMW) + kRowTextCapacity * sizeof(wchar_t));
  if (!block.valid()) return L"";
  LVITEMW item{};
  item.iSubItem = column;
  item.pszText = reinterpret_cast<wchar_t*>(block.at(sizeof item));
  item.cchTextMax = static_cast<int>(kRowTextCapacity);
  block.Write(0, &item, sizeof item);
  auto length = static_cast<size_t>(SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
                                                 reinterpret_cast<LPARAM>(block.at(0))));
  std::wstring text(std::min(length, kRowTextCapacity - 1), L'\0');
  block.Read(sizeof item, text.data(), text.size() * sizeof(wchar_t));
  return text;
}

std::wstring ListColumnText(HWND list, int column) {
  RemoteBlock block(list, sizeof(LVCOLUMNW) + kRowTextCapacity * sizeof(wchar_t));
  if (!block.valid()) return L"";
  LVCOLUMNW header{};
  header.mask = LVCF_TEXT;
  header.pszText = reinterpret_cast<wchar_t*>(block.at(sizeof header));
  header.cchTextMax = static_cast<int>(kRowTextCapacity);
  block.Write(0, &header, sizeof header);
  if (SendMessageW(list, LVM_GETCOLUMNW, static_cast<WPARAM>(column),
                   reinterpret_cast<LPARAM>(block.at(0))) == 0) {
    return L"";
  }
  std::wstring text(kRowTextCapacity, L'\0');
  block.Read(sizeof header, text.data(), text.size() * sizeof(wchar_t));
  text.resize(wcsnlen(text.c_str(), text.size()));
  return text;
}

std::vector<std::wstring> ListRows(HWND list, int column) {
  std::vector<std::wstring> rows;
  for (int row = 0; row < ListRowCount(list); ++row) rows.push_back(ListRowText(list, row, column));
  return rows;
}

void SelectListRows(HWND list, const std::vector<int>& rows) {
  RemoteBlock block(list, sizeof(LVITEMW));
  LVITEMW item{};
  item.stateMask = LVIS_SELECTED;
  item.state = LVIS_SELECTED;
  block.Write(0, &item, sizeof item);
  for (int row : rows) {
    SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(block.at(0)));
  }
}

bool EditListRow(HWND list, int row, const std::wstring& text) {
  auto edit =
      reinterpret_cast<HWND>(SendMessageW(list, LVM_EDITLABELW, static_cast<WPARAM>(row), 0));
  if (edit == nullptr) return false;
  SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
  SendMessageW(edit, WM_KEYDOWN, VK_RETURN, 0);
  return true;
}

std::vector<int> ListSelectedRows(HWND list) {
  std::vector<int> rows;
  int row = -1;
  while ((row = static_cast<int>(SendMessageW(list, LVM_GETNEXTITEM, row, LVNI_SELECTED))) >= 0) {
    rows.push_back(row);
  }
  return rows;
}

void ChooseComboItem(HWND dialog, int comboId, int item) {
  HWND combo = GetDlgItem(dialog, comboId);
  SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(item), 0);
  SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(comboId, CBN_SELCHANGE),
               reinterpret_cast<LPARAM>(combo));
}

HWND FocusOfThread(HWND window) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
  return info.hwndFocus;
}
