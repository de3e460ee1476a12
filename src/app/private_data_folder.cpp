#include "app/private_data_folder.h"

bool SMPrivateDataFolder::DeleteLicenseFiles() {
  if (platform_ == nullptr || path_.empty()) return false;
  return platform_->DeleteTree(path_);
}
