#pragma once

#include <optional>

#include "settings/settings_manager.h"

// The Storage page's radio group: 0 Allow, 1 Ask, 2 Block.
enum StorageChoice : int { kStorageAllow = 0, kStorageAsk = 1, kStorageBlock = 2 };

// "defaultklimit" as the page shows it: absent or any value other than 0 and -1 is Allow.
int StorageIndexForLimit(std::optional<double> defaultklimit);
int ReadStorageIndex(SMSettingsManager& settings);
