#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/platform_services.h"
#include "support/fake_system.h"
#include "support/native_platform.h"
#include "support/temp_folder.h"

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
