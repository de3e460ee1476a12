// The data locations on a real Windows system (the tests' own Wine prefix): the folders the
// shell names and the administrator file in the 32-bit system folder.
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

}  // namespace

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
