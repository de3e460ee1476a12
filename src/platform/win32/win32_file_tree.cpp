#include "platform/win32/win32_platform.h"

// Placeholder until the file-tree operations land: every operation fails.
bool Win32PlatformServices::DeleteTree(const std::string&) { return false; }
bool Win32PlatformServices::RemoveTreeByAge(const std::string&, uint64_t, uint64_t) { return false; }
uint64_t Win32PlatformServices::TreeSize(const std::string&) { return 0; }
bool Win32PlatformServices::CreateFolder(const std::string&, const std::string&) { return false; }
std::optional<std::vector<std::string>> Win32PlatformServices::ListEntries(const std::string&) {
  return std::nullopt;
}
