#include "platform/platform_services.h"

#include <gtest/gtest.h>

#include <string>

#include "support/fake_system.h"
#include "support/native_platform.h"
#include "support/temp_folder.h"
#include "support/test_profile.h"

namespace {

std::string Native(const char* backslashPath) {
  return NativeRelativePath(backslashPath);
}

struct Profile {
  TempFolder folder;
  FakeSystem system;
  Profile() {
    SMPlatformServices::ResetPathCachesForTesting();
    UseFoldersIn(system, folder);
  }
};

}  // namespace

// EnableLocalAppData moves only the data root (the key's case and value are the
// administrator file's and ParseBool's tables). The other caches' names: the CLI tests.
TEST(DataLocations, EveryPathHasItsSuffixAndEnableLocalAppDataMovesOnlyTheDataRoot) {
  Profile profile;
  WriteFileBytes(profile.folder.path() / "syswow64" / "Tessalin" / "Vantrel" / "tss.cfg",
                 "EnableLocalAppData=1\n");
  auto platform = MakeNativePlatform(profile.system);
  const std::string roaming = profile.system.roamingAppData;
  EXPECT_EQ(platform->AssetCacheFolder(),
            roaming + Native("\\Brinmor\\Vantrel Player\\AssetCache"));
  EXPECT_EQ(platform->PlayerDataRoot(),
            profile.system.localAppData + Native("\\Tessaline\\Vantrel Player"));
  EXPECT_EQ(AdminConfigFilePath(profile.system),
            profile.system.systemWow64 + Native("\\Tessalin\\Vantrel\\tss.cfg"));
  // The data root is asked for with the create flag; the caches without it.
  EXPECT_EQ(profile.system.shellFolderQueries.back(),
            SMSystem::kLocalAppData | SMSystem::kCreateFlag);
}

TEST(DataLocations, FailedFolderQueriesFallBack) {
  const std::string shellFolders =
      "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
  struct Case {
    const char* registryValue;  // nullptr: no value
    const char* expectedBase;
  };
  const Case cases[] = {
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

TEST(DataLocations, PathsAreCutAt259UnitsAndAFailedConversionIsTriedAgain) {
  const std::string suffix = Native("\\Brinmor\\Vantrel Player\\AssetCache");  // 34 units
  const std::string rootSuffix = Native("\\Tessaline\\Vantrel Player");        // 25 units
  std::string accented;  // 250 units in 500 bytes
  for (int i = 0; i < 250; ++i) accented += "\xC3\xA9";
  const std::string b225(225, 'b'), b259(259, 'b');
  struct Case {
    const char* what;
    std::string base;
    std::string assetCache;  // empty: the conversion fails
    std::string dataRoot;
  };
  const Case cases[] = {
      {"fits exactly", b225, b225 + suffix, b225 + rootSuffix},
      {"no room for a suffix", b259, b259, b259},
      {"units, not bytes, count", accented, accented + suffix.substr(0, 9),
       accented + rootSuffix.substr(0, 9)},
      {"cut through a surrogate pair", std::string(258, 'b') + "\xF0\x9F\x98\x80", "", ""},
      {"not UTF-8", "C:\\\xFF", "", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Profile profile;
    profile.system.roamingAppData = c.base;
    auto platform = MakeNativePlatform(profile.system);
    EXPECT_EQ(platform->AssetCacheFolder(), c.assetCache);
    EXPECT_EQ(platform->PlayerDataRoot(), c.dataRoot);
    // A failed conversion caches nothing: the next call with a good folder gives the path.
    profile.system.roamingAppData = b225;
    EXPECT_EQ(platform->AssetCacheFolder(), c.assetCache.empty() ? b225 + suffix : c.assetCache);
  }
}
