#include "support/native_platform.h"

std::unique_ptr<SMPlatformServices> MakeNativePlatform(SMSystem& system) {
  SMPlatformServices::ResetPathCachesForTesting();
  return std::make_unique<NativePlatform>(system);
}
