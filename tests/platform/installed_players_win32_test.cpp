// The players' registry keys, the update service, the uninstallers and the administrator file
// on a real Windows system (the tests' own Wine prefix): what the scripted system cannot show.
#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <filesystem>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "admincfg/admin_config.h"
#include "platform/installed_players.h"
#include "platform/platform_services.h"
#include "platform/update_service.h"
#include "platform/win32/win32_system.h"
#include "support/temp_folder.h"

namespace fs = std::filesystem;

namespace {

const wchar_t* const kPluginKey = L"SOFTWARE\\Tessaline\\VantrelPlayerPlugin";
const wchar_t* const kPepperKey = L"SOFTWARE\\Tessaline\\VantrelPlayerPepper";

// The player keys as the 32-bit installers write them (KEY_WOW64_32KEY), removed from both
// views before and after every use so that other tests in the prefix never see them.
class PlayerRegistry {
 public:
  PlayerRegistry() { RemoveAll(); }
  ~PlayerRegistry() { RemoveAll(); }

  void SetNumber(const wchar_t* key, const wchar_t* name, DWORD number,
                 REGSAM view = KEY_WOW64_32KEY) {
    Set(key, view, name, REG_DWORD, &number, sizeof number);
  }
  void SetText(const wchar_t* key, const wchar_t* name, const std::wstring& text) {
    Set(key, KEY_WOW64_32KEY, name, REG_SZ, text.c_str(),
        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }

 private:
  static void Set(const wchar_t* key, REGSAM view, const wchar_t* name, DWORD type,
                  const void* data, DWORD bytes) {
    HKEY handle = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, key, 0, nullptr, 0, KEY_ALL_ACCESS | view,
                              nullptr, &handle, nullptr),
              ERROR_SUCCESS);
    EXPECT_EQ(RegSetValueExW(handle, name, 0, type, static_cast<const BYTE*>(data), bytes),
              ERROR_SUCCESS);
    RegCloseKey(handle);
  }
  static void RemoveAll() {
    for (REGSAM view : {KEY_WOW64_32KEY, KEY_WOW64_64KEY}) {
      for (const wchar_t* key : {kPluginKey, kPepperKey, L"SOFTWARE\\Tessaline"}) {
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

// Puts copies of the stub where the update service (beside this test program) and the two
// uninstallers (in a temporary folder) are looked for, and keeps the log of their command
// lines. Removes everything it created.
class PlayerTools {
 public:
  PlayerTools() {
    const fs::path folder = ProgramPath().parent_path();
    createdServiceFolders_ = !fs::exists(folder / "Tessalin");
    service = folder / "Tessalin" / "Vantrel" / "VantrelPlayerUpdateService.exe";
    fs::create_directories(service.parent_path());
    for (const fs::path& tool : {service, pepperUninstaller, pluginUninstaller}) {
      fs::copy_file(folder / "player_tool_stub.exe", tool, fs::copy_options::overwrite_existing);
    }
    SetEnvironmentVariableW(L"VP_PLAYER_TOOL_LOG", log_.c_str());
  }
  ~PlayerTools() {
    SetEnvironmentVariableW(L"VP_PLAYER_TOOL_LOG", nullptr);
    std::error_code ignored;
    fs::remove_all(createdServiceFolders_ ? service.parent_path().parent_path() : service, ignored);
    fs::remove(service.wstring() + L".exitcode", ignored);
  }
  static void SetExitCode(const fs::path& tool, unsigned long code) {
    WriteFileBytes(tool.wstring() + L".exitcode", std::to_string(code));
  }
  // One command line per launch, in the order they ran; the log starts afresh.
  std::vector<std::string> TakeCommandLines() {
    std::vector<std::string> lines;
    std::istringstream text(fs::exists(log_) ? ReadFileBytes(log_) : "");
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    fs::remove(log_);
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

// The administrator file in the prefix's 32-bit system folder (the prefix has none of its own),
// removed afterwards with the folders made for it.
struct AdminFileGuard {
  explicit AdminFileGuard(const std::string& utf8) : path(PathFromUtf8(utf8)) {
    fs::create_directories(path.parent_path());
  }
  ~AdminFileGuard() {
    std::error_code ignored;
    if (createdFolder) fs::remove_all(path.parent_path().parent_path(), ignored);
    fs::remove(path, ignored);
  }
  fs::path path;
  bool createdFolder = !fs::exists(path.parent_path().parent_path());
};

}  // namespace

// How the stored bytes read is the native tests' table; here, that the real registry's 32-bit
// view is the one asked and a value arrives as its bytes.
TEST(Win32Players, ProbesAndTextsReadThe32BitView) {
  Win32System system;
  PlayerRegistry registry;
  registry.SetNumber(kPluginKey, L"isPartner", 1, KEY_WOW64_64KEY);
  EXPECT_EQ(ProbePlayerKey(system, PlayerKind::Npapi), PlayerNotInstalled);
  registry.SetNumber(kPluginKey, L"isPartner", 1);
  EXPECT_EQ(ProbePlayerKey(system, PlayerKind::Npapi), PlayerInstalledPartner);
  registry.SetText(kPepperKey, L"Version", L"32.0 \u00e9dition \u6587");
  EXPECT_EQ(ReadPlayerVersion(system, PlayerKind::Ppapi),
            "32.0 \xC3\xA9"
            "dition \xE6\x96\x87");
}

// The prefix presents Windows 7; the Updates page rule for both answers is the native tests'.
TEST(Win32Players, VersionAndAdministratorAreTheSystemsOwn) {
  Win32System system;
  OSVERSIONINFOW info{};  // the version as another call reports it
  info.dwOSVersionInfoSize = sizeof info;
  ASSERT_TRUE(GetVersionExW(&info));
  EXPECT_EQ(IsWindows8OrLater(system),
            info.dwMajorVersion > 6 || (info.dwMajorVersion == 6 && info.dwMinorVersion >= 2));
  EXPECT_TRUE(IsUserAdmin(system));  // Wine's user is an administrator
}

// Which tools each mode runs is the native tests' table; here real processes start with those
// command lines, their exit codes arrive (259, what a process still running reports, is never a
// success), and the file is written in text mode, and not at all while another program holds it.
TEST(Win32Players, ApplyUpdateModeRunsTheToolsAndRewritesTheAdministratorFile) {
  Win32System system;
  PlayerRegistry registry;
  PlayerTools tools;
  AdminFileGuard adminFile(AdminConfigFilePath(system));
  registry.SetText(kPluginKey, L"UninstallerPath", tools.pluginUninstaller.wstring());
  WriteFileBytes(adminFile.path, "AVHardwareDisable=1\nAutoUpdateDisable=1\n");
  PlayerTools::SetExitCode(tools.service, 259);
  EXPECT_FALSE(RunUpdateService(system, "-install"));
  EXPECT_TRUE(RunNpapiUninstaller(system, " -setnpapinotification 1"));
  EXPECT_FALSE(RunPpapiUninstaller(system, " -setppapinotification 1"));  // no PPAPI player
  tools.TakeCommandLines();

  // The service's failure does not keep the mode from being stored.
  SMAdminConfig config(PathToUtf8(adminFile.path));
  ASSERT_TRUE(ApplyUpdateMode(system, &config, kUpdateAutomatically));
  EXPECT_EQ(
      tools.TakeCommandLines(),
      (std::vector<std::string>{PathToUtf8(tools.service) + " -install",
                                PathToUtf8(tools.pluginUninstaller) + " -setnpapinotification 1"}));
  const std::string automatic =
      "AVHardwareDisable=1\r\nAutoUpdateDisable=0\r\nSilentAutoUpdateEnable=1\r\n";
  EXPECT_EQ(ReadFileBytes(adminFile.path), automatic);

  // Held by another program that shares only reads: false, and the object reloads the file.
  HANDLE holder = CreateFileW(adminFile.path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(holder, INVALID_HANDLE_VALUE);
  EXPECT_FALSE(ApplyUpdateMode(system, &config, kUpdateNever));
  CloseHandle(holder);
  EXPECT_EQ(ReadUpdateMode(config), kUpdateAutomatically);
  EXPECT_EQ(ReadFileBytes(adminFile.path), automatic);

  fs::remove(tools.service);
  EXPECT_FALSE(RunUpdateService(system, "-install"));  // it cannot start
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
  EXPECT_TRUE(lines[0].ends_with(" startupdialog=advanced")) << lines[0];
}
