#include "pages/storage_logic.h"

#include <string>
#include <vector>

#include "settings/setting_keys.h"

namespace {

// The radios from top to bottom.
constexpr SiteChoice kRadioChoices[] = {kChoiceAllow, kChoiceAsk, kChoiceBlock};

// Sites are visited from the last listed to the first, and every one is tried even after a
// failure, so one broken site does not keep the others on the old limit.
bool SetLimitOfEverySite(SMSettingsManager& settings, SiteChoice choice) {
  const std::vector<std::string> sites = KnownSiteNames(settings);
  bool allStored = true;
  for (auto site = sites.rbegin(); site != sites.rend(); ++site) {
    allStored = WriteSiteChoice(settings, *site, SitePermission::kStorage, choice) && allStored;
  }
  return allStored;
}

}  // namespace

SiteChoice ChoiceForStorageRadio(int index) {
  // No radio checked stores what Allow stores.
  return index >= 0 && index < 3 ? kRadioChoices[index] : kChoiceAllow;
}

int StorageRadioForChoice(SiteChoice choice) {
  for (int index = 0; index < 3; ++index) {
    if (kRadioChoices[index] == choice) return index;
  }
  return -1;
}

int StorageIndexForLimit(std::optional<double> defaultStorageLimit) {
  return StorageRadioForChoice(ChoiceForStorageLimit(defaultStorageLimit));
}

int ReadStorageIndex(SMSettingsManager& settings) {
  return StorageIndexForLimit(
      settings.GetValueAs<double>(SMSettingsManager::MasterDomain(), kDefaultStorageLimit.name));
}

double StorageLimitForIndex(int index) {
  return StorageLimitForChoice(ChoiceForStorageRadio(index));
}

int ApplyStorageChoice(SMSettingsManager& settings, SMUserPrompts& prompts, int previousIndex,
                       int chosenIndex) {
  const SiteChoice choice = ChoiceForStorageRadio(chosenIndex);
  if (choice == kChoiceBlock &&
      !prompts.ConfirmBox(TextId::kStorageBlockAllText, TextId::kStorageBlockAllDeletesData,
                          TextId::kStorageBlockAllCaption))
    return previousIndex;
  bool stored = settings.SetValue(
      SMSettingsManager::MasterDomain(),
      SettingValue::Number(kDefaultStorageLimit.name, StorageLimitForChoice(choice)));
  // Blocking also throws away what sites stored so far, but only once the block is on disk.
  if (stored && choice == kChoiceBlock) stored = settings.RemoveAllSites(false);
  if (stored) stored = SetLimitOfEverySite(settings, choice);
  return stored ? chosenIndex : previousIndex;
}
