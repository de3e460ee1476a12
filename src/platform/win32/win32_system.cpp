#include "platform/win32/win32_system.h"

#include <windows.h>
// windows.h first: the shell headers need its types.
#include <shellapi.h>
#include <shlobj.h>

#include "platform/win32/utf16.h"

namespace {

constexpr DWORD kMaxPath = 260;

HKEY RootKey(SMSystem::RegistryRoot root) {
  return root == SMSystem::RegistryRoot::LocalMachine32 ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

// The player's 32-bit installers write their keys in the 32-bit view; this program is 64-bit.
REGSAM Access(SMSystem::RegistryRoot root, REGSAM access) {
  return root == SMSystem::RegistryRoot::LocalMachine32 ? (access | KEY_WOW64_32KEY) : access;
}

std::string Utf8OrEmpty(std::wstring_view text) {
  return ToUtf8(text).value_or("");
}

}  // namespace

bool Win32System::OpenRegistryKey(RegistryRoot root, const std::string& subKey) {
  std::optional<std::wstring> wideKey = ToUtf16(subKey);
  if (!wideKey) return false;
  HKEY key = nullptr;
  if (RegOpenKeyExW(RootKey(root), wideKey->c_str(), 0, Access(root, KEY_QUERY_VALUE), &key) !=
      ERROR_SUCCESS) {
    return false;
  }
  RegCloseKey(key);
  return true;
}

std::optional<std::vector<uint8_t>> Win32System::QueryRegistryValue(const RegistryQuery& query) {
  std::vector<uint8_t> buffer(query.bufferBytes, 0);
  DWORD size = query.bufferBytes;
  HKEY key = nullptr;
  LONG status;
  if (query.ansi) {
    if (RegOpenKeyExA(RootKey(query.root), query.subKey.c_str(), 0, Access(query.root, KEY_READ),
                      &key) != ERROR_SUCCESS) {
      return std::nullopt;
    }
    status = RegQueryValueExA(key, query.valueName.c_str(), nullptr, nullptr, buffer.data(), &size);
    RegCloseKey(key);
    if (status != ERROR_SUCCESS) return std::nullopt;
    // The 8-bit value is in the ANSI code page; hand it on as UTF-8.
    buffer.push_back(0);
    const char* ansi = reinterpret_cast<const char*>(buffer.data());
    int length = MultiByteToWideChar(CP_ACP, 0, ansi, -1, nullptr, 0);
    if (length <= 0) return std::nullopt;
    std::wstring wide(static_cast<size_t>(length), L'\0');
    MultiByteToWideChar(CP_ACP, 0, ansi, -1, wide.data(), length);
    std::string utf8 = Utf8OrEmpty(std::wstring_view(wide.c_str()));
    return std::vector<uint8_t>(utf8.begin(), utf8.end());
  }
  std::optional<std::wstring> wideKey = ToUtf16(query.subKey);
  std::optional<std::wstring> wideName = ToUtf16(query.valueName);
  if (!wideKey || !wideName) return std::nullopt;
  if (RegOpenKeyExW(RootKey(query.root), wideKey->c_str(), 0, Access(query.root, KEY_QUERY_VALUE),
                    &key) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  status = RegQueryValueExW(key, wideName->c_str(), nullptr, nullptr, buffer.data(), &size);
  RegCloseKey(key);
  if (status != ERROR_SUCCESS) return std::nullopt;
  buffer.resize(size);
  return buffer;
}

bool Win32System::IsWindows8OrLater() {
  OSVERSIONINFOEXW version{};
  version.dwOSVersionInfoSize = sizeof version;
  version.dwMajorVersion = 6;
  version.dwMinorVersion = 2;
  version.wServicePackMajor = 0;
  DWORDLONG condition = 0;
  condition = VerSetConditionMask(condition, VER_MAJORVERSION, VER_GREATER_EQUAL);
  condition = VerSetConditionMask(condition, VER_MINORVERSION, VER_GREATER_EQUAL);
  condition = VerSetConditionMask(condition, VER_SERVICEPACKMAJOR, VER_GREATER_EQUAL);
  return VerifyVersionInfoW(&version, VER_MAJORVERSION | VER_MINORVERSION | VER_SERVICEPACKMAJOR,
                            condition) != FALSE;
}

bool Win32System::IsUserAdmin() {
  SID_IDENTIFIER_AUTHORITY ntAuthority = SECURITY_NT_AUTHORITY;
  PSID administrators = nullptr;
  if (!AllocateAndInitializeSid(&ntAuthority, 2, SECURITY_BUILTIN_DOMAIN_RID,
                                DOMAIN_ALIAS_RID_ADMINS, 0, 0, 0, 0, 0, 0, &administrators)) {
    return false;
  }
  BOOL isMember = FALSE;
  if (!CheckTokenMembership(nullptr, administrators, &isMember)) isMember = FALSE;
  FreeSid(administrators);
  return isMember == 1;
}

uint16_t Win32System::UserDefaultUILanguage() {
  return GetUserDefaultUILanguage();
}

std::string Win32System::CommandLine() {
  return Utf8OrEmpty(GetCommandLineW());
}

std::string Win32System::ModulePath() {
  wchar_t path[kMaxPath] = {};
  GetModuleFileNameW(nullptr, path, kMaxPath);
  return Utf8OrEmpty(path);
}

std::optional<uint32_t> Win32System::RunAndWait(const std::string& commandLine,
                                                uint32_t timeoutMs) {
  std::optional<std::wstring> wide = ToUtf16(commandLine);
  if (!wide) return std::nullopt;
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, wide->data(), nullptr, nullptr, FALSE,
                      CREATE_NO_WINDOW | CREATE_DEFAULT_ERROR_MODE, nullptr, nullptr, &startup,
                      &process)) {
    return std::nullopt;
  }
  WaitForSingleObject(process.hProcess, timeoutMs);
  DWORD exitCode = 0;
  GetExitCodeProcess(process.hProcess, &exitCode);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return exitCode;
}

bool Win32System::LaunchElevated(const std::string& program, const std::string& parameters) {
  std::optional<std::wstring> wideProgram = ToUtf16(program);
  std::optional<std::wstring> wideParameters = ToUtf16(parameters);
  if (!wideProgram || !wideParameters) return false;
  SHELLEXECUTEINFOW execute{};
  execute.cbSize = sizeof execute;
  execute.lpVerb = L"runas";
  execute.lpFile = wideProgram->c_str();
  execute.lpParameters = wideParameters->c_str();
  execute.nShow = SW_SHOWNORMAL;
  return ShellExecuteExW(&execute) != FALSE;
}

void Win32System::ExitProcess(int status) {
  ::ExitProcess(static_cast<UINT>(status));
}

void Win32System::OpenUrl(void* ownerWindow, const char* address) {
  std::optional<std::wstring> wide;
  if (address != nullptr) wide = ToUtf16(address);
  ShellExecuteW(static_cast<HWND>(ownerWindow), L"open", wide ? wide->c_str() : nullptr, nullptr,
                nullptr, SW_SHOWNORMAL);
}

std::optional<std::string> Win32System::ShellFolderPath(int csidl) {
  wchar_t path[kMaxPath] = {};
  if (FAILED(SHGetFolderPathW(nullptr, csidl, nullptr, 0, path))) return std::nullopt;
  return Utf8OrEmpty(path);
}

std::string Win32System::SystemWow64Directory() {
  wchar_t path[kMaxPath] = {};
  if (GetSystemWow64DirectoryW(path, kMaxPath) == 0) return std::string();
  return Utf8OrEmpty(path);
}

std::string Win32System::SystemDirectory() {
  wchar_t path[kMaxPath] = {};
  if (GetSystemDirectoryW(path, kMaxPath) == 0) return std::string();
  return Utf8OrEmpty(path);
}

std::string Win32System::DisplaySortKey(const std::string& text) {
  // A sorted list view compares its texts as lstrcmpW does (user locale, case and symbols
  // weighed, not byte by byte); the sort key of the same comparison orders them the same way.
  std::optional<std::wstring> wide = ToUtf16(text);
  if (!wide) return text;
  int length = LCMapStringW(LOCALE_USER_DEFAULT, LCMAP_SORTKEY, wide->c_str(), -1, nullptr, 0);
  if (length <= 0) return text;
  std::string key(static_cast<size_t>(length), '\0');
  LCMapStringW(LOCALE_USER_DEFAULT, LCMAP_SORTKEY, wide->c_str(), -1,
               reinterpret_cast<wchar_t*>(key.data()), length);
  // The key ends in a zero byte, which keeps a key that is a prefix of another one first.
  return key;
}

std::string Win32System::FoldCase(const std::string& text) {
  // A list view finds a typed text with the locale's case-blind comparison; lowering both sides
  // with the same locale matches as it does.
  std::optional<std::wstring> wide = ToUtf16(text);
  if (!wide || wide->empty()) return text;
  const int length = static_cast<int>(wide->size());
  std::wstring lowered(wide->size(), L'\0');
  if (LCMapStringW(LOCALE_USER_DEFAULT, LCMAP_LOWERCASE, wide->c_str(), length, lowered.data(),
                   length) != length) {
    return text;
  }
  return ToUtf8(lowered).value_or(text);
}
