#pragma once

#include "platform/platform_services.h"

// The player's file-tree operations on the file system the program is built for: one
// declaration, implemented in win32/win32_file_tree.cpp (the Windows shell and file API) or in
// posix/posix_file_tree.cpp (POSIX, "/" between path pieces), whichever the build compiles.
class SMNativePlatformServices : public SMPlatformServices {
 public:
  explicit SMNativePlatformServices(SMSystem& system) : SMPlatformServices(system) {}

  bool DeleteTree(const std::string& path) override;
  bool RemoveTreeByAge(const std::string& path, uint64_t minAgeSeconds,
                       uint64_t maxAgeSeconds) override;
  uint64_t TreeSize(const std::string& path) override;
#ifdef _WIN32
  // One call instead of a walk (win32/win32_file_size.cpp).
  uint64_t FileSize(const std::string& path) override;
#endif
  bool CreateFolder(const std::string& parent, const std::string& name) override;
  std::optional<std::vector<std::string>> ListEntries(const std::string& folder) override;
};
