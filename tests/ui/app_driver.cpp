#include "app_driver.h"

#include <chrono>
#include <functional>
#include <thread>

#include "l10n/string_table.h"
#include "platform/win32/utf16.h"
#include "platform/win32/win32_system.h"
#include "support/process_start.h"

namespace {

constexpr auto kAppearLimit = std::chrono::seconds(20);
constexpr auto kWaitLimit = std::chrono::seconds(10);
constexpr auto kCloseLimit = std::chrono::seconds(5);

DWORD Milliseconds(std::chrono::milliseconds limit) {
  return static_cast<DWORD>(ScaledTimeout(limit).count());
}

// A block of memory in the process that owns a window, for messages that carry pointers.
class RemoteMemory {
 public:
  RemoteMemory(HWND window, size_t size) : size_(size) {
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    process_ =
        OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, processId);
    if (process_ != nullptr) {
      address_ = VirtualAllocEx(process_, nullptr, size, MEM_COMMIT, PAGE_READWRITE);
    }
  }
  ~RemoteMemory() {
    if (address_ != nullptr) VirtualFreeEx(process_, address_, 0, MEM_RELEASE);
    if (process_ != nullptr) CloseHandle(process_);
  }
  RemoteMemory(const RemoteMemory&) = delete;
  RemoteMemory& operator=(const RemoteMemory&) = delete;

  bool valid() const { return address_ != nullptr; }
  char* address() const { return static_cast<char*>(address_); }
  bool Write(size_t offset, const void* bytes, size_t count) {
    return offset + count <= size_ &&
           WriteProcessMemory(process_, address() + offset, bytes, count, nullptr);
  }
  bool Read(size_t offset, void* bytes, size_t count) const {
    return offset + count <= size_ &&
           ReadProcessMemory(process_, address() + offset, bytes, count, nullptr);
  }

 private:
  HANDLE process_ = nullptr;
  void* address_ = nullptr;
  size_t size_;
};

}  // namespace

bool WaitFor(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + ScaledTimeout(kWaitLimit);
  while (std::chrono::steady_clock::now() < deadline) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return condition();
}

std::function<bool(HWND)> WithCaption(const std::wstring& caption) {
  return [caption](HWND window) { return WindowText(window) == caption; };
}

std::function<bool(HWND)> WithControl(int controlId) {
  return [controlId](HWND window) { return GetDlgItem(window, controlId) != nullptr; };
}

void Click(HWND dialog, int controlId) {
  PostMessageW(GetDlgItem(dialog, controlId), BM_CLICK, 0, 0);
}

bool Answer(HWND dialog, int buttonId) {
  if (GetDlgItem(dialog, buttonId) == nullptr) return false;
  Click(dialog, buttonId);
  return WaitFor([&] { return !IsWindow(dialog); });
}

int ListViewCount(HWND list) {
  return static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
}

std::wstring ListViewText(HWND list, int item, int column) {
  constexpr size_t kChars = 1024;
  RemoteMemory memory(list, sizeof(LVITEMW) + kChars * sizeof(wchar_t));
  if (!memory.valid()) return L"";
  LVITEMW request{};
  request.iSubItem = column;
  request.cchTextMax = kChars;
  request.pszText = reinterpret_cast<wchar_t*>(memory.address() + sizeof(LVITEMW));
  if (!memory.Write(0, &request, sizeof request)) return L"";
  SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(item),
               reinterpret_cast<LPARAM>(memory.address()));
  std::wstring text(kChars, L'\0');
  if (!memory.Read(sizeof(LVITEMW), text.data(), kChars * sizeof(wchar_t))) return L"";
  text.resize(wcsnlen(text.c_str(), kChars));
  return text;
}

std::vector<std::wstring> ListViewColumn(HWND list, int column) {
  std::vector<std::wstring> texts;
  for (int item = 0, count = ListViewCount(list); item < count; ++item) {
    texts.push_back(ListViewText(list, item, column));
  }
  return texts;
}

bool ListViewSelect(HWND list, int item) {
  RemoteMemory memory(list, sizeof(LVITEMW));
  if (!memory.valid()) return false;
  LVITEMW state{};
  state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  // Clear every selection first, then select the one item.
  if (!memory.Write(0, &state, sizeof state)) return false;
  SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(-1),
               reinterpret_cast<LPARAM>(memory.address()));
  state.state = LVIS_SELECTED | LVIS_FOCUSED;
  if (!memory.Write(0, &state, sizeof state)) return false;
  return SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(item),
                      reinterpret_cast<LPARAM>(memory.address())) != 0;
}

std::wstring UserText(uint32_t id) {
  Win32System system;
  SMUserLanguageStringTable strings(system);
  const char* text = strings.GetString(id);
  return text != nullptr ? ToUtf16(text).value_or(L"") : L"";
}

HWND FindDialogOfProcess(DWORD processId, const std::function<bool(HWND)>& accept) {
  struct Search {
    DWORD processId;
    const std::function<bool(HWND)>& accept;
    HWND found;
  } search{processId, accept, nullptr};
  EnumWindows(
      [](HWND window, LPARAM parameter) -> BOOL {
        auto* wanted = reinterpret_cast<Search*>(parameter);
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        wchar_t className[16] = {};
        GetClassNameW(window, className, 16);
        if (owner != wanted->processId || wcscmp(className, L"#32770") != 0 ||
            !IsWindowVisible(window) || !wanted->accept(window)) {
          return TRUE;
        }
        wanted->found = window;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

std::wstring AppPath() {
  std::wstring path = L"Z:" VP_APP_EXE_PATH;
  for (wchar_t& c : path) {
    if (c == L'/') c = L'\\';
  }
  return path;
}

std::wstring WindowText(HWND window) {
  wchar_t text[2048] = {};
  SendMessageW(window, WM_GETTEXT, 2048, reinterpret_cast<LPARAM>(text));
  return text;
}

LONG ExtendedStyle(HWND window) {
  return GetWindowLongW(window, GWL_EXSTYLE);
}

bool IsChecked(HWND page, int controlId) {
  return SendMessageW(GetDlgItem(page, controlId), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

AppUnderTest::~AppUnderTest() {
  Stop();
}

::testing::AssertionResult AppUnderTest::Start(const std::wstring& arguments) {
  Stop();
  std::wstring commandLine = L"\"" + AppPath() + L"\"";
  if (!arguments.empty()) commandLine += L" " + arguments;
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  StartResult start = StartProcess(commandLine, FALSE, 0, &startup, &process_);
  if (!start.started()) {
    process_ = PROCESS_INFORMATION{};
    return ::testing::AssertionFailure() << start.Describe();
  }
  // The caption in the language the program will pick: the driver's own.
  const std::wstring caption = UserText(12000);
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
  if (WaitForSingleObject(process_.hProcess, Milliseconds(kCloseLimit)) != WAIT_OBJECT_0) {
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

int AppUnderTest::CurrentTab() const {
  return static_cast<int>(SendMessageW(tabs(), TCM_GETCURSEL, 0, 0));
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

HWND AppUnderTest::WaitForMessageBox() const {
  return WaitForDialog([](HWND) { return true; });
}
