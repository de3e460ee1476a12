#include "platform/posix/posix_platform.h"

// Placeholder until the file-tree operations land: every operation fails.
bool PosixPlatformServices::DeleteTree(const std::string&) { return false; }
bool PosixPlatformServices::RemoveTreeByAge(const std::string&, uint64_t, uint64_t) { return false; }
uint64_t PosixPlatformServices::TreeSize(const std::string&) { return 0; }
bool PosixPlatformServices::CreateFolder(const std::string&, const std::string&) { return false; }
std::optional<std::vector<std::string>> PosixPlatformServices::ListEntries(const std::string&) {
  return std::nullopt;
}
