#include "support/native_platform.h"

#ifdef _WIN32
#include "platform/win32/win32_platform.h"
#else
#include "platform/posix/posix_platform.h"
#endif

std::unique_ptr<SMPlatformServices> MakeNativePlatform(SMSystem& system) {
  SMPlatformServices::ResetPathCachesForTesting();
#ifdef _WIN32
  return std::make_unique<Win32PlatformServices>(system);
#else
  return std::make_unique<PosixPlatformServices>(system);
#endif
}
