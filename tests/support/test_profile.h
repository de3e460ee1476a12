#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/platform_services.h"
#include "support/fake_system.h"
#include "support/native_platform.h"
#include "support/temp_folder.h"

// A user profile in a temporary folder whose player data root exists, as the player leaves it.
struct TestProfile {
  TempFolder temp;
  FakeSystem system;
  std::unique_ptr<SMPlatformServices> platform;
  std::filesystem::path dataRoot;

  TestProfile() {
    system.roamingAppData = temp.Utf8("Roaming");
    system.localAppData = temp.Utf8("Local");
    system.systemWow64 = temp.Utf8("syswow64");
    system.systemDirectory = temp.Utf8("system32");
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
