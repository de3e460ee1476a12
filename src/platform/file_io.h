#pragma once

#include <cstdio>
#include <optional>
#include <string>

// Opens a file named by a UTF-8 path (converted to UTF-16 for Windows at the last moment).
std::FILE* OpenFileUtf8(const std::string& path, const char* mode);

// The whole file, or nothing when it cannot be opened or read.
std::optional<std::string> ReadWholeFile(const std::string& path);
