#pragma once

#include <cstdio>
#include <optional>
#include <string>

// Opens a file named by a UTF-8 path (converted to UTF-16 for Windows at the last moment).
std::FILE* OpenFileUtf8(const std::string& path, const char* mode);

// The whole file, or nothing when it cannot be opened or read.
std::optional<std::string> ReadWholeFile(const std::string& path);

// The system's reason for the last failed call on this thread, such as "Permission denied":
// on Windows the text of GetLastError when it holds a code, else that of errno. Empty when
// neither holds one.
std::string LastSystemError();
// Forgets the last reason, so that LastSystemError names only what fails after this call.
void ClearSystemError();
