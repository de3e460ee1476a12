#pragma once

#include <memory>

#include "platform/platform_services.h"

// The build's own platform implementation (Windows or POSIX) over the given system facts.
std::unique_ptr<SMPlatformServices> MakeNativePlatform(SMSystem& system);
