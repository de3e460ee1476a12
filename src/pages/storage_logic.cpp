#include "pages/storage_logic.h"

#include <string>
#include <vector>

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

double StorageLimitForIndex(int index) {
  switch (index) {
    case kStorageAsk:
      return 0.0;
    case kStorageBlock:
      return -1.0;
    default:
      return 100.0;
  }
}

namespace {

// Sites are visited from the last listed to the first, and every one is tried even after a
// failure, so one broken site does not keep the others on the old limit.
bool SetLimitOfEverySite(SMSettingsManager& settings, double limit) {
  std::vector<std::string> sites;
  if (const SettingArray* known = settings.GetKnownSites()) {
    for (const SettingValue& site : *known) sites.push_back(site.name());
  }
  bool allStored = true;
  for (auto site = sites.rbegin(); site != sites.rend(); ++site) {
    allStored = settings.SetValue(*site, SettingValue::Number("klimit", limit)) && allStored;
  }
  return allStored;
}

}  // namespace

int ApplyStorageChoice(SMSettingsManager& settings, SMUserPrompts& prompts, int previousIndex,
                       int chosenIndex) {
  const double limit = StorageLimitForIndex(chosenIndex);
  if (chosenIndex == kStorageBlock && !prompts.ConfirmBox(21102, 21103, 21100)) {
    return previousIndex;
  }
  bool stored = settings.SetValue(SMSettingsManager::MasterDomain(),
                                  SettingValue::Number("defaultklimit", limit));
  // Blocking also throws away what sites stored so far, but only once the block is on disk.
  if (stored && limit == -1.0) stored = settings.RemoveAllSites(false);
  if (stored) stored = SetLimitOfEverySite(settings, limit);
  return stored ? chosenIndex : previousIndex;
}
