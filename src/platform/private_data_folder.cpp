#include "platform/private_data_folder.h"

bool SMPrivateDataFolder::DeleteLicenceFiles() {
  if (platform_ == nullptr || path_.empty()) return false;
  return platform_->DeleteTree(path_);
}
