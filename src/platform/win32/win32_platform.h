#pragma once

#include "platform/platform_services.h"

// The player's file-tree operations through the Windows shell and file API.
class Win32PlatformServices : public SMPlatformServices {
 public:
  explicit Win32PlatformServices(SMSystem& system) : SMPlatformServices(system) {}

  bool DeleteTree(const std::string& path) override;
  bool RemoveTreeByAge(const std::string& path, uint64_t minAgeSeconds,
                       uint64_t maxAgeSeconds) override;
  uint64_t TreeSize(const std::string& path) override;
  uint64_t FileSize(const std::string& path) override;
  bool CreateFolder(const std::string& parent, const std::string& name) override;
  std::optional<std::vector<std::string>> ListEntries(const std::string& folder) override;
};
