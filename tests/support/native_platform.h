#pragma once

#include <memory>
#include <string>

#include "platform/platform_services.h"
#ifdef _WIN32
#include "platform/win32/win32_platform.h"
using NativePlatform = Win32PlatformServices;
#else
#include "platform/posix/posix_platform.h"
using NativePlatform = PosixPlatformServices;
#endif

// The build's own platform implementation (Windows or POSIX) over the given system facts.
std::unique_ptr<SMPlatformServices> MakeNativePlatform(SMSystem& system);

// The build's platform, except that one path cannot be deleted, as when another program holds
// a file open there: a tree that contains it is left whole and its deletion fails.
class LockingPlatform : public NativePlatform {
 public:
  using NativePlatform::NativePlatform;
  bool DeleteTree(const std::string& path) override {
    return !Holds(path) && NativePlatform::DeleteTree(path);
  }

 protected:
  // Also what a settings write goes through before it writes a file anew.
  bool DeleteWithoutFollowingLinks(const std::string& path) override {
    return !Holds(path) && NativePlatform::DeleteWithoutFollowingLinks(path);
  }

 public:
  std::string locked;

 private:
  bool Holds(const std::string& path) const {
    return !locked.empty() && locked.compare(0, path.size(), path) == 0;
  }
};
