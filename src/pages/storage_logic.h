#pragma once

#include <optional>

#include "app/user_prompts.h"
#include "settings/settings_manager.h"
#include "settings/site_permissions.h"

// The Storage page's radio group: 0 Allow, 1 Ask, 2 Block.
enum StorageChoice : int { kStorageAllow = 0, kStorageAsk = 1, kStorageBlock = 2 };

// The radios stand for the per-site storage choices in their own order; the default limit means
// what a site's limit means (absent or any value other than 0 and -1 is Allow).
SiteChoice ChoiceForStorageRadio(int index);
int StorageRadioForChoice(SiteChoice choice);
int StorageIndexForLimit(std::optional<double> defaultStorageLimit);
int ReadStorageIndex(SMSettingsManager& settings);

// The default storage limit a radio stands for; no radio checked counts as Allow.
double StorageLimitForIndex(int index);
// Stores a click on the radio group (Block only after the user confirms) and mirrors the limit
// into every known site. Returns the index the group must show: the chosen one, or the
// previous one when the user cancelled or anything could not be stored.
int ApplyStorageChoice(SMSettingsManager& settings, SMUserPrompts& prompts, int previousIndex,
                       int chosenIndex);
