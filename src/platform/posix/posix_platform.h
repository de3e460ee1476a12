#pragma once

#include "platform/native_platform.h"

// The POSIX build's file-tree operations.
using PosixPlatformServices = SMNativePlatformServices;
