#include "pages/storage_logic.h"

#include "pages/global_values.h"

int StorageIndexForLimit(std::optional<double> defaultklimit) {
  if (!defaultklimit) return kStorageAllow;
  if (*defaultklimit == -1.0) return kStorageBlock;
  if (*defaultklimit == 0.0) return kStorageAsk;
  return kStorageAllow;
}

int ReadStorageIndex(SMSettingsManager& settings) {
  return StorageIndexForLimit(GlobalNumber(settings, "defaultklimit"));
}
