#pragma once

#include <string>

#ifdef _WIN32
#include "platform/win32/win32_platform.h"
using BuildPlatformServices = Win32PlatformServices;
#else
#include "platform/posix/posix_platform.h"
using BuildPlatformServices = PosixPlatformServices;
#endif

// The build's platform, except that one path cannot be deleted, as when another program holds
// a file open there: a tree that contains it is left whole and its deletion fails.
class LockingPlatform : public BuildPlatformServices {
 public:
  using BuildPlatformServices::BuildPlatformServices;
  bool DeleteTree(const std::string& path) override {
    if (!locked.empty() && locked.compare(0, path.size(), path) == 0) return false;
    return BuildPlatformServices::DeleteTree(path);
  }

  std::string locked;
};
