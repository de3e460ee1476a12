// The data locations on a real Windows system (the tests' own Wine prefix): the folders the
// shell names, the administrator file in the 32-bit system folder, the "Shell Folders" fallback.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>

#include "platform/platform_services.h"
#include "platform/win32/utf16.h"
#include "platform/win32/win32_platform.h"
#include "platform/win32/win32_system.h"
#include "support/temp_folder.h"

namespace fs = std::filesystem;

namespace {

std::string Environment(const wchar_t* name) {
  wchar_t value[MAX_PATH] = {};
  GetEnvironmentVariableW(name, value, MAX_PATH);
  return ToUtf8(value).value_or("");
}

// The real system whose folder queries fail, so that the registry fallback is taken.
class FolderQueriesFail : public Win32System {
 public:
  std::optional<std::string> ShellFolderPath(int) override { return std::nullopt; }
};

// Writes tss.cfg in the 32-bit system folder and removes it again at the end.
class AdminFile {
 public:
  AdminFile(SMSystem& system, const std::string& contents)
      : path_(PathFromUtf8(AdminConfigFilePath(system))) {
    WriteFileBytes(path_, contents);
  }
  ~AdminFile() {
    std::error_code error;
    fs::remove(path_, error);
  }

 private:
  fs::path path_;
};

}  // namespace

TEST(DataLocationsWin32, AdminFileInThe32BitSystemFolderMovesTheDataRoot) {
  const std::string roaming = Environment(L"APPDATA");
  const std::string local = Environment(L"LOCALAPPDATA");
  ASSERT_FALSE(roaming.empty());
  ASSERT_NE(roaming, local);
  SMPlatformServices::ResetPathCachesForTesting();
  Win32System system;
  wchar_t wow64[MAX_PATH] = {};
  ASSERT_GT(GetSystemWow64DirectoryW(wow64, MAX_PATH), 0u) << "a 64-bit prefix has syswow64";
  EXPECT_EQ(AdminConfigFilePath(system), ToUtf8(wow64).value() + "\\Tessalin\\Vantrel\\tss.cfg");
  AdminFile adminFile(system, "EnableLocalAppData=1\r\n");
  Win32PlatformServices platform(system);
  EXPECT_EQ(platform.PlayerDataRoot(), local + "\\Tessaline\\Vantrel Player");
  EXPECT_EQ(platform.AssetCacheFolder(), roaming + "\\Brinmor\\Vantrel Player\\AssetCache");
}

TEST(DataLocationsWin32, FailedFolderQueryFallsBackOnShellFolders) {
  SMPlatformServices::ResetPathCachesForTesting();
  FolderQueriesFail system;
  Win32PlatformServices platform(system);
  ASSERT_FALSE(platform.enableLocalAppData());
  EXPECT_EQ(platform.PlayerDataRoot(), Environment(L"APPDATA") + "\\Tessaline\\Vantrel Player");
  // The caches have no fallback: a path from the root of the current drive remains.
  EXPECT_EQ(platform.VXCacheFolder(), "\\Brinmor\\Vantrel Player\\VXCache");
}
