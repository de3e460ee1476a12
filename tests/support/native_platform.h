#pragma once

#include <memory>

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
