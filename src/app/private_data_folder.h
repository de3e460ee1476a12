#pragma once

#include <string>

#include "platform/platform_services.h"

// The protected-content licence folder, captured once at start-up, with the platform that can
// delete it. The pages that offer deauthorisation share this one holder.
class SMPrivateDataFolder {
 public:
  SMPrivateDataFolder(std::string path, SMPlatformServices* platform)
      : path_(std::move(path)), platform_(platform) {}

  // Deletes the licence files; false when the folder is unknown or something stays behind.
  bool DeleteLicenseFiles();
  // Teardown clears the platform before the platform object goes away.
  void ClearPlatform() { platform_ = nullptr; }

  const std::string& path() const { return path_; }
  SMPlatformServices* platform() const { return platform_; }

 private:
  std::string path_;
  SMPlatformServices* platform_;
};
