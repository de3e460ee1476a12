#pragma once

#include <string>

#include "platform/platform_services.h"

// The protected-content licence folder, as the program found it at start-up.
class SMPrivateDataFolder {
 public:
  SMPrivateDataFolder(std::string path, SMPlatformServices* platform)
      : path_(std::move(path)), platform_(platform) {}

  const std::string& path() const { return path_; }
  // Deletes the licence files with everything below them; false when that failed or when
  // the folder is not known.
  bool DeleteLicenceFiles();
  // The platform goes away before this holder at the end of the run.
  void ForgetPlatform() { platform_ = nullptr; }

 private:
  std::string path_;
  SMPlatformServices* platform_;
};
