// The system facts on a real Windows system (the tests' own Wine prefix): the players' registry
// keys, the update service, the uninstallers, the administrator file and the data folders, where
// the scripted system cannot show them.
#include "platform/win32/win32_system.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>

#include "admincfg/admin_config.h"
#include "platform/installed_players.h"
#include "platform/platform_services.h"
#include "platform/update_service.h"
#include "platform/win32/utf16.h"
#include "platform/win32/win32_platform.h"
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

std::string Environment(const wchar_t* name) {
  wchar_t value[MAX_PATH] = {};
  GetEnvironmentVariableW(name, value, MAX_PATH);
  return ToUtf8(value).value_or("");
}

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
  TempFolder temp;
  // Copies of the stub where the update service (beside this program) and the NPAPI uninstaller
  // are looked for; each appends its command line to the log.
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const fs::path folder = fs::path(program).parent_path();
  const fs::path service = folder / "Tessalin" / "Vantrel" / "VantrelPlayerUpdateService.exe";
  const fs::path uninstaller = temp.path() / "PluginUninstall.exe";
  const fs::path log = temp.path() / "launches.log";
  fs::create_directories(service.parent_path());
  for (const fs::path& tool : {service, uninstaller}) {
    fs::copy_file(folder / "player_tool_stub.exe", tool, fs::copy_options::overwrite_existing);
  }
  SetEnvironmentVariableW(L"VP_PLAYER_TOOL_LOG", log.c_str());
  const fs::path adminFile = PathFromUtf8(AdminConfigFilePath(system));
  registry.SetText(kPluginKey, L"UninstallerPath", uninstaller.wstring());
  WriteFileBytes(adminFile, "AVHardwareDisable=1\nAutoUpdateDisable=1\n");
  WriteFileBytes(service.wstring() + L".exitcode", "259");
  EXPECT_FALSE(RunUpdateService(system, "-install"));
  EXPECT_TRUE(RunNpapiUninstaller(system, " -setnpapinotification 1"));
  fs::remove(log);

  // The service's failure does not keep the mode from being stored.
  SMAdminConfig config(PathToUtf8(adminFile));
  ASSERT_TRUE(ApplyUpdateMode(system, &config, kUpdateAutomatically));
  EXPECT_EQ(ReadFileBytes(log), PathToUtf8(service) + " -install\n" + PathToUtf8(uninstaller) +
                                    " -setnpapinotification 1\n");
  const std::string automatic =
      "AVHardwareDisable=1\r\nAutoUpdateDisable=0\r\nSilentAutoUpdateEnable=1\r\n";
  EXPECT_EQ(ReadFileBytes(adminFile), automatic);

  // Held by another program that shares only reads: false, and the object reloads the file.
  HANDLE holder = CreateFileW(adminFile.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(holder, INVALID_HANDLE_VALUE);
  EXPECT_FALSE(ApplyUpdateMode(system, &config, kUpdateNever));
  CloseHandle(holder);
  EXPECT_EQ(ReadUpdateMode(config), kUpdateAutomatically);
  EXPECT_EQ(ReadFileBytes(adminFile), automatic);

  fs::remove_all(folder / "Tessalin");
  EXPECT_FALSE(RunUpdateService(system, "-install"));  // it cannot start
  SetEnvironmentVariableW(L"VP_PLAYER_TOOL_LOG", nullptr);
  fs::remove(adminFile);
}

TEST(DataLocationsWin32, AdminFileInThe32BitSystemFolderMovesTheDataRoot) {
  const std::string roaming = Environment(L"APPDATA");
  const std::string local = Environment(L"LOCALAPPDATA");
  ASSERT_NE(roaming, local);
  SMPlatformServices::ResetPathCachesForTesting();
  Win32System system;
  wchar_t wow64[MAX_PATH] = {};
  ASSERT_GT(GetSystemWow64DirectoryW(wow64, MAX_PATH), 0u) << "a 64-bit prefix has syswow64";
  EXPECT_EQ(AdminConfigFilePath(system), ToUtf8(wow64).value() + "\\Tessalin\\Vantrel\\tss.cfg");
  const fs::path adminFile = PathFromUtf8(AdminConfigFilePath(system));
  WriteFileBytes(adminFile, "EnableLocalAppData=1\r\n");
  Win32PlatformServices platform(system);
  EXPECT_EQ(platform.PlayerDataRoot(), local + "\\Tessaline\\Vantrel Player");
  EXPECT_EQ(platform.AssetCacheFolder(), roaming + "\\Brinmor\\Vantrel Player\\AssetCache");
  fs::remove(adminFile);
}
