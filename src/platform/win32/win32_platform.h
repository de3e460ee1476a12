#pragma once

#include "platform/native_platform.h"

// The Windows build's file-tree operations.
using Win32PlatformServices = SMNativePlatformServices;
