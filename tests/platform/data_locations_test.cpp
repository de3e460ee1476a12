#include <gtest/gtest.h>

#include <string>

#include "platform/platform_services.h"
#include "support/fake_system.h"
#include "support/native_platform.h"
#include "support/temp_folder.h"

namespace {

std::string Native(const char* backslashPath) {
  return NativeRelativePath(backslashPath);
}

struct Profile {
  TempFolder folder;
  FakeSystem system;
  Profile() {
    SMPlatformServices::ResetPathCachesForTesting();
    system.roamingAppData = folder.Utf8("Roaming");
    system.localAppData = folder.Utf8("Local");
    system.systemWow64 = folder.Utf8("syswow64");
    system.systemDirectory = folder.Utf8("system32");
  }
  void WriteAdminFile(const std::string& bytes) {
    WriteFileBytes(folder.path() / "syswow64" / "Tessalin" / "Vantrel" / "tss.cfg", bytes);
  }
};

}  // namespace

TEST(DataLocations, EveryPathHasItsSuffix) {
  Profile profile;
  auto platform = MakeNativePlatform(profile.system);
  const std::string roaming = profile.system.roamingAppData;
  EXPECT_EQ(platform->AssetCacheFolder(),
            roaming + Native("\\Brinmor\\Vantrel Player\\AssetCache"));
  EXPECT_EQ(platform->VXCacheFolder(), roaming + Native("\\Brinmor\\Vantrel Player\\VXCache"));
  EXPECT_EQ(platform->PrivateDataFolder(),
            roaming + Native("\\Brinmor\\Vantrel Player\\KPSPrivateData2"));
  EXPECT_EQ(platform->PlayerDataRoot(), roaming + Native("\\Tessaline\\Vantrel Player"));
  EXPECT_EQ(AdminConfigFilePath(profile.system),
            profile.system.systemWow64 + Native("\\Tessalin\\Vantrel\\tss.cfg"));
  // The data root is asked for with the create flag; the caches without it.
  EXPECT_EQ(profile.system.shellFolderQueries.back(),
            SMSystem::kRoamingAppData | SMSystem::kCreateFlag);
}

TEST(DataLocations, EnableLocalAppDataMovesOnlyTheDataRoot) {
  struct Case {
    std::string adminFile;
    bool local;
  };
  const Case cases[] = {
      {"EnableLocalAppData=1\n", true},
      {"EnableLocalAppData = yes\n", true},
      {"EnableLocalAppData=0\n", false},
      {"enablelocalappdata=1\n", false},
      {"\xFF\xFE"
       "EnableLocalAppData=1\n",
       false},
  };
  for (const Case& c : cases) {
    Profile profile;
    profile.WriteAdminFile(c.adminFile);
    auto platform = MakeNativePlatform(profile.system);
    EXPECT_EQ(platform->enableLocalAppData(), c.local) << c.adminFile;
    const std::string& base = c.local ? profile.system.localAppData : profile.system.roamingAppData;
    EXPECT_EQ(platform->PlayerDataRoot(), base + Native("\\Tessaline\\Vantrel Player"))
        << c.adminFile;
    EXPECT_EQ(platform->VXCacheFolder(),
              profile.system.roamingAppData + Native("\\Brinmor\\Vantrel Player\\VXCache"));
  }
}

TEST(DataLocations, CachesKeepTheirFirstValue) {
  Profile profile;
  auto platform = MakeNativePlatform(profile.system);
  const std::string root = platform->PlayerDataRoot();
  const std::string cache = platform->AssetCacheFolder();
  const std::string admin = AdminConfigFilePath(profile.system);
  profile.system.roamingAppData = profile.folder.Utf8("Elsewhere");
  profile.system.systemWow64 = profile.folder.Utf8("other");
  EXPECT_EQ(platform->PlayerDataRoot(), root);
  EXPECT_EQ(platform->AssetCacheFolder(), cache);
  EXPECT_EQ(AdminConfigFilePath(profile.system), admin);
}

TEST(DataLocations, FailedFolderQueriesFallBack) {
  const std::string shellFolders =
      "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
  struct Case {
    const char* registryValue;  // nullptr: no value
    const char* expectedBase;
  };
  const Case cases[] = {
      {"C:\\Users\\u\\AppData\\Roaming\\", "C:\\Users\\u\\AppData\\Roaming"},
      {"C:\\Users\\u\\AppData\\Roaming\\\\", "C:\\Users\\u\\AppData\\Roaming\\"},
      {"C:\\Users\\u\\AppData\\Roaming/", "C:\\Users\\u\\AppData\\Roaming"},
      {"C:\\Users\\u\\AppData\\Roaming", "C:\\Users\\u\\AppData\\Roaming"},
      {nullptr, ""},
  };
  for (const Case& c : cases) {
    Profile profile;
    profile.system.shellFolderQueryFails = true;
    if (c.registryValue != nullptr) {
      std::string text = c.registryValue;
      profile.system.SetRegistryValue(SMSystem::RegistryRoot::CurrentUser, shellFolders, "AppData",
                                      std::vector<uint8_t>(text.begin(), text.end() + 0));
    }
    auto platform = MakeNativePlatform(profile.system);
    EXPECT_EQ(platform->PlayerDataRoot(),
              std::string(c.expectedBase) + Native("\\Tessaline\\Vantrel Player"));
    // The caches have no fallback: the bare suffix remains.
    EXPECT_EQ(platform->AssetCacheFolder(), Native("\\Brinmor\\Vantrel Player\\AssetCache"));
  }
}

TEST(DataLocations, AdminFileFallsBackToTheSystemFolder) {
  Profile profile;
  profile.system.systemWow64.clear();
  EXPECT_EQ(AdminConfigFilePath(profile.system),
            profile.system.systemDirectory + Native("\\Tessalin\\Vantrel\\tss.cfg"));
  SMPlatformServices::ResetPathCachesForTesting();
  profile.system.systemDirectory.clear();
  EXPECT_EQ(AdminConfigFilePath(profile.system), "");
}
