// The players' registry keys, the update service, the uninstallers and the administrator file
// on a real Windows system (the tests' own Wine prefix): what the scripted system cannot show.
#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "admincfg/admin_config.h"
#include "platform/installed_players.h"
#include "platform/platform_services.h"
#include "platform/update_service.h"
#include "platform/win32/win32_system.h"
#include "support/process_runner.h"
#include "support/temp_folder.h"

namespace fs = std::filesystem;

namespace {

const wchar_t* const kActiveXKey = L"SOFTWARE\\Tessaline\\VantrelPlayerActiveX";
const wchar_t* const kPluginKey = L"SOFTWARE\\Tessaline\\VantrelPlayerPlugin";
const wchar_t* const kPepperKey = L"SOFTWARE\\Tessaline\\VantrelPlayerPepper";

// The player keys as the 32-bit installers write them (KEY_WOW64_32KEY), removed from both
// views before and after every use so that other tests in the prefix never see them.
class PlayerRegistry {
 public:
  PlayerRegistry() { RemoveAll(); }
  ~PlayerRegistry() { RemoveAll(); }

  void AddKey(const wchar_t* key, REGSAM view = KEY_WOW64_32KEY) { Set(key, view, nullptr, 0); }
  void SetNumber(const wchar_t* key, const wchar_t* name, DWORD number) {
    Set(key, KEY_WOW64_32KEY, name, REG_DWORD, &number, sizeof number);
  }
  void SetText(const wchar_t* key, const wchar_t* name, const std::wstring& text) {
    Set(key, KEY_WOW64_32KEY, name, REG_SZ, text.c_str(),
        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }

 private:
  // Creates the key, and sets the value when a name is given.
  static void Set(const wchar_t* key, REGSAM view, const wchar_t* name, DWORD type,
                  const void* data = nullptr, DWORD bytes = 0) {
    HKEY handle = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, key, 0, nullptr, 0, KEY_ALL_ACCESS | view,
                              nullptr, &handle, nullptr),
              ERROR_SUCCESS);
    if (name != nullptr) {
      EXPECT_EQ(RegSetValueExW(handle, name, 0, type, static_cast<const BYTE*>(data), bytes),
                ERROR_SUCCESS);
    }
    RegCloseKey(handle);
  }
  static void RemoveAll() {
    for (REGSAM view : {KEY_WOW64_32KEY, KEY_WOW64_64KEY}) {
      for (const wchar_t* key : {kActiveXKey, kPluginKey, kPepperKey, L"SOFTWARE\\Tessaline"}) {
        RegDeleteKeyExW(HKEY_LOCAL_MACHINE, key, view, 0);
      }
    }
  }
};

fs::path ProgramPath() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return path;
}

fs::path ProgramFolder() {
  return ProgramPath().parent_path();
}

// Puts copies of the stub where the update service (beside this test program) and the two
// uninstallers (in a temporary folder) are looked for, and keeps the log of their command
// lines. Removes everything it created.
class PlayerTools {
 public:
  PlayerTools() {
    const fs::path stub = ProgramFolder() / "player_tool_stub.exe";
    createdServiceFolders_ = !fs::exists(ProgramFolder() / "Tessalin");
    service = ProgramFolder() / "Tessalin" / "Vantrel" / "VantrelPlayerUpdateService.exe";
    fs::create_directories(service.parent_path());
    fs::copy_file(stub, service, fs::copy_options::overwrite_existing);
    fs::copy_file(stub, pepperUninstaller);
    fs::copy_file(stub, pluginUninstaller);
    SetEnvironmentVariableW(L"VP_PLAYER_TOOL_LOG", log_.c_str());
  }
  ~PlayerTools() {
    SetEnvironmentVariableW(L"VP_PLAYER_TOOL_LOG", nullptr);
    std::error_code ignored;
    fs::remove_all(createdServiceFolders_ ? ProgramFolder() / "Tessalin" : service, ignored);
    fs::remove(service.wstring() + L".exitcode", ignored);
  }
  static void SetExitCode(const fs::path& tool, unsigned long code) {
    WriteFileBytes(tool.wstring() + L".exitcode", std::to_string(code));
  }
  // One command line per launch, in the order they ran; the log starts afresh.
  std::vector<std::string> TakeCommandLines() {
    std::vector<std::string> lines;
    std::string text = ReadFileBytes(log_);
    for (size_t start = 0, end; (end = text.find('\n', start)) != std::string::npos;
         start = end + 1) {
      lines.push_back(text.substr(start, end - start));
    }
    if (!lines.empty()) fs::remove(log_);
    return lines;
  }

 private:
  TempFolder tools_;
  fs::path log_ = tools_.path() / "launches.log";
  bool createdServiceFolders_ = false;

 public:
  fs::path service;
  fs::path pepperUninstaller = tools_.path() / "PepperUninstall.exe";
  fs::path pluginUninstaller = tools_.path() / "PluginUninstall.exe";
};

// The administrator file in the prefix's 32-bit system folder, put back as it was afterwards.
class AdminFileGuard {
 public:
  explicit AdminFileGuard(const std::string& path) : path_(PathFromUtf8(path)) {
    existed_ = fs::exists(path_);
    if (existed_) before_ = ReadFileBytes(path_);
    createdFolder_ = !fs::exists(path_.parent_path().parent_path());
    fs::create_directories(path_.parent_path());
    fs::remove(path_);
  }
  ~AdminFileGuard() {
    std::error_code ignored;
    fs::remove(path_, ignored);
    if (existed_) WriteFileBytes(path_, before_);
    if (createdFolder_) fs::remove_all(path_.parent_path().parent_path(), ignored);
  }
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
  bool existed_ = false;
  bool createdFolder_ = false;
  std::string before_;
};

}  // namespace

// How the stored bytes read is the native tests' table; here, that the real registry's
// 32-bit view is the one asked and a DWORD arrives as its four bytes.
TEST(Win32Players, ProbesReadThe32BitViewAndIsPartnerAsStored) {
  Win32System system;
  PlayerRegistry registry;
  registry.AddKey(kPluginKey, KEY_WOW64_64KEY);
  EXPECT_EQ(ProbePlayerKey(system, PlayerKind::Npapi), PlayerNotInstalled);
  registry.AddKey(kPluginKey);
  EXPECT_EQ(ProbePlayerKey(system, PlayerKind::Npapi), PlayerInstalled);
  registry.SetNumber(kPluginKey, L"isPartner", 1);
  EXPECT_EQ(ProbePlayerKey(system, PlayerKind::Npapi), PlayerInstalledPartner);
  EXPECT_EQ(ProbePlayerKey(system, PlayerKind::Ppapi), PlayerNotInstalled);
}

// Paths and flags as such are read by the update-mode test below; here the texts' conversion
// and sizes.
TEST(Win32Players, TextsComeFromTheInstallersKeys) {
  Win32System system;
  PlayerRegistry registry;
  registry.SetText(kPepperKey, L"Version", L"32.0.0.465 \u00e9dition \u6587");
  registry.SetText(kPluginKey, L"UninstallerPath", std::wstring(130, L'x'));  // 262 bytes
  registry.SetText(kActiveXKey, L"Version", std::wstring(259, L'9'));
  EXPECT_EQ(ReadPlayerVersion(system, PlayerKind::Ppapi),
            "32.0.0.465 \xC3\xA9"
            "dition \xE6\x96\x87");
  EXPECT_EQ(ReadPlayerVersion(system, PlayerKind::ActiveX), std::string(259, '9'));
  EXPECT_EQ(ReadUninstallerPath(system, PlayerKind::Npapi), std::nullopt);
}

// Runs on the prefix's own Windows version, and again in a copy of this program that Wine
// presents with Windows 10 (see the next test).
TEST(Win32Players, UpdatesPageFollowsTheWindowsVersion) {
  Win32System system;
  OSVERSIONINFOW info{};  // the version as another call reports it
  info.dwOSVersionInfoSize = sizeof info;
  ASSERT_TRUE(GetVersionExW(&info));
  const bool windows8 = IsWindows8OrLater(system);
  EXPECT_EQ(windows8,
            info.dwMajorVersion > 6 || (info.dwMajorVersion == 6 && info.dwMinorVersion >= 2));
  wchar_t expected[8] = {};
  if (GetEnvironmentVariableW(L"VP_EXPECT_WINDOWS8", expected, 8) > 0) {
    ASSERT_EQ(windows8, expected[0] == L'1');
  }
  EXPECT_TRUE(IsUserAdmin(system));  // Wine's user is an administrator
  // The rule's cases are in the native tests; here the version the system reports decides.
  PlayerRegistry registry;
  registry.AddKey(kActiveXKey);
  EXPECT_EQ(WantsUpdatesPage(system), !windows8) << "ActiveX only";
}

TEST(Win32Players, UpdatesPageOnWindows10) {
  wchar_t child[8] = {};
  if (GetEnvironmentVariableW(L"VP_EXPECT_WINDOWS8", child, 8) > 0) GTEST_SKIP();
  // Wine takes the version a program sees from its per-program defaults, read at its start.
  TempFolder folder;
  const fs::path copy = folder.path() / "vp_windows10_probe.exe";
  fs::copy_file(ProgramPath(), copy);
  const wchar_t* const appDefaults = L"Software\\Wine\\AppDefaults\\vp_windows10_probe.exe";
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, appDefaults, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                            &key, nullptr),
            ERROR_SUCCESS);
  const wchar_t version[] = L"win10";
  RegSetValueExW(key, L"Version", 0, REG_SZ, reinterpret_cast<const BYTE*>(version),
                 sizeof version);
  RegCloseKey(key);
  SetEnvironmentVariableW(L"VP_EXPECT_WINDOWS8", L"1");
  ProcessResult run = RunProcess(
      PathToUtf8(copy), {"--gtest_filter=Win32Players.UpdatesPageFollowsTheWindowsVersion"});
  SetEnvironmentVariableW(L"VP_EXPECT_WINDOWS8", nullptr);
  RegDeleteKeyW(HKEY_CURRENT_USER, appDefaults);
  EXPECT_EQ(run.exitCode, 0) << run.out << run.err;
}

TEST(Win32Players, ApplyUpdateModeRunsTheToolsAndRewritesTheAdministratorFile) {
  Win32System system;
  PlayerRegistry registry;
  PlayerTools tools;
  AdminFileGuard adminFile(AdminConfigFilePath(system));
  registry.SetText(kPepperKey, L"UninstallerPath", tools.pepperUninstaller.wstring());
  registry.SetText(kPluginKey, L"UninstallerPath", tools.pluginUninstaller.wstring());
  registry.SetNumber(kPluginKey, L"isScriptDebugger", 1);
  WriteFileBytes(adminFile.path(), "AVHardwareDisable=1\nAutoUpdateDisable=1\n");
  // The service's failure does not keep the mode from being stored.
  PlayerTools::SetExitCode(tools.service, 4);

  const std::string service = PathToUtf8(tools.service) + " ";
  const std::string pepper = PathToUtf8(tools.pepperUninstaller);
  const std::string plugin = PathToUtf8(tools.pluginUninstaller);
  SMAdminConfig config(PathToUtf8(adminFile.path()));
  ASSERT_TRUE(ApplyUpdateMode(system, &config, kUpdateAutomatically));
  EXPECT_EQ(tools.TakeCommandLines(),
            (std::vector<std::string>{service + "-install", pepper + " -setppapinotification 1"}));
  const std::string automatic =
      "AVHardwareDisable=1\r\nAutoUpdateDisable=0\r\nSilentAutoUpdateEnable=1\r\n";
  EXPECT_EQ(ReadFileBytes(adminFile.path()), automatic);

  // A file that cannot be opened for writing (another program holds it, sharing only reads):
  // false, and the object reloads what the file still holds.
  HANDLE holder = CreateFileW(adminFile.path().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(holder, INVALID_HANDLE_VALUE);
  EXPECT_FALSE(ApplyUpdateMode(system, &config, kUpdateNever));
  CloseHandle(holder);
  EXPECT_EQ(tools.TakeCommandLines(),
            (std::vector<std::string>{service + "-uninstall", pepper + " -setppapinotification 0",
                                      plugin + " -setnpapinotification 0"}));
  EXPECT_EQ(ReadUpdateMode(config), kUpdateAutomatically);
  EXPECT_EQ(ReadFileBytes(adminFile.path()), automatic);
}

TEST(Win32Players, LaunchResultsAreTheRealExitCodes) {
  Win32System system;
  PlayerRegistry registry;
  PlayerTools tools;
  registry.SetText(kPluginKey, L"UninstallerPath", tools.pluginUninstaller.wstring());
  // 259 is what a process still running reports: never a success.
  for (unsigned long exitCode : {0ul, 1ul, 259ul}) {
    PlayerTools::SetExitCode(tools.service, exitCode);
    PlayerTools::SetExitCode(tools.pluginUninstaller, exitCode);
    EXPECT_EQ(RunUpdateService(system, "-install"), exitCode == 0) << exitCode;
    EXPECT_EQ(RunNpapiUninstaller(system, " -setnpapinotification 1"), exitCode == 0) << exitCode;
  }
  EXPECT_EQ(tools.TakeCommandLines().size(), 6u);
  // No PPAPI player: nothing to run. No service program: it cannot start.
  EXPECT_FALSE(RunPpapiUninstaller(system, " -setppapinotification 1"));
  fs::remove(tools.service);
  EXPECT_FALSE(RunUpdateService(system, "-install"));
  EXPECT_TRUE(tools.TakeCommandLines().empty());
}

namespace {

// The real shell elevation, but of the stub instead of this test program, and with the end of
// the process turned into an exception the test can catch.
class StubElevationSystem : public Win32System {
 public:
  explicit StubElevationSystem(std::string program) : program_(std::move(program)) {}
  std::string ModulePath() override { return program_; }
  [[noreturn]] void ExitProcess(int status) override { throw status; }

 private:
  std::string program_;
};

}  // namespace

TEST(Win32Players, RelaunchElevatedStartsTheProgramWithTheUpdatesPageKeyword) {
  PlayerTools tools;
  StubElevationSystem system(PathToUtf8(tools.pepperUninstaller));
  std::optional<int> exitStatus;
  try {
    RelaunchElevated(system);
  } catch (int status) {
    exitStatus = status;
  }
  ASSERT_EQ(exitStatus, 0);
  // The shell starts the copy without waiting for it.
  std::vector<std::string> lines;
  for (int i = 0; i < 100 && lines.empty(); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    lines = tools.TakeCommandLines();
  }
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_NE(lines[0].find("PepperUninstall.exe"), std::string::npos) << lines[0];
  EXPECT_TRUE(lines[0].ends_with(" startupdialog=advanced")) << lines[0];
}
