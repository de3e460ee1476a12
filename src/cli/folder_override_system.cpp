#include "cli/folder_override_system.h"

std::optional<std::string> FolderOverrideSystem::ShellFolderPath(int csidl) {
  int folder = csidl & ~kCreateFlag;
  if (folder == kRoamingAppData && !roaming_.empty()) return roaming_;
  if (folder == kLocalAppData && !local_.empty()) return local_;
  return base_.ShellFolderPath(csidl);
}
