#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/platform_services.h"
#include "settings/settings_manager.h"
#include "support/fake_system.h"
#include "support/native_platform.h"
#include "support/temp_folder.h"

// The domain of the global settings, in the master file.
inline const std::string kMasterDomain = SMSettingsManager::MasterDomain();

// Points the scripted system's folders (roaming and local application data, the 32-bit and the
// native system folder) below one temporary folder.
inline void UseFoldersIn(FakeSystem& system, const TempFolder& folder) {
  system.roamingAppData = folder.Utf8("Roaming");
  system.localAppData = folder.Utf8("Local");
  system.systemWow64 = folder.Utf8("syswow64");
  system.systemDirectory = folder.Utf8("system32");
}

// A user profile in a temporary folder whose player data root exists, as the player leaves it.
struct TestProfile {
  TempFolder temp;
  FakeSystem system;
  std::unique_ptr<SMPlatformServices> platform;
  std::filesystem::path dataRoot;

  TestProfile() {
    UseFoldersIn(system, temp);
    platform = MakeNativePlatform(system);
    dataRoot = PathFromUtf8(platform->PlayerDataRoot());
    std::filesystem::create_directories(dataRoot);
  }
  std::filesystem::path SettingsFolder() const {
    return dataRoot / "tessaline.com" / "support" / "vantrelplayer" / "sys";
  }
  std::filesystem::path MasterFile() const { return SettingsFolder() / "settings.sol"; }
  std::filesystem::path SiteFile(const std::string& site) const {
    return SettingsFolder() / PathFromUtf8("#" + site) / "settings.sol";
  }
  std::filesystem::path SharedObjects() const { return dataRoot / "#SharedObjects"; }
};

// A profile whose master file lists the given sites, each with its settings file.
struct SitesProfile : TestProfile {
  explicit SitesProfile(const std::vector<std::string>& sites = {}) {
    std::filesystem::create_directories(SettingsFolder());
    SMSettingsManager setup(*platform);
    for (const std::string& site : sites) EXPECT_TRUE(setup.AddSite(site)) << site;
  }
  // A value as the next run of the program reads it from disk.
  template <typename T>
  std::optional<T> Stored(const std::string& domain, const std::string& name) {
    return SMSettingsManager(*platform).GetValueAs<T>(domain, name);
  }
  // Puts a file where the settings folder was, so that every later settings write fails.
  // Returns where the folder went.
  std::filesystem::path BreakSettingsFolder() {
    const std::filesystem::path moved = temp.path() / "moved";
    std::filesystem::rename(SettingsFolder(), moved);
    WriteFileBytes(SettingsFolder(), "not a folder");
    return moved;
  }
};
