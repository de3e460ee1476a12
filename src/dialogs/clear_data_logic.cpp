#include "dialogs/clear_data_logic.h"

#include "app/user_prompts.h"
#include "platform/private_data_folder.h"
#include "settings/settings_manager.h"
#include "settings/site_permissions.h"

int ClampCheckState(int state) {
  return state < kCheckUnchecked || state > kCheckIndeterminate ? kCheckUnchecked : state;
}

ClearDataRequest RequestFromCheckStates(int siteDataState, int licenceState) {
  return ClearDataRequest{ClampCheckState(siteDataState) == kCheckChecked,
                          ClampCheckState(licenceState) == kCheckChecked};
}

ClearDataOutcome ClearAllData(SMSettingsManager& settings, SMPlatformServices& platform,
                              SMPrivateDataFolder& privateData, SMUserPrompts& prompts,
                              ClearDataRequest request) {
  ClearDataOutcome outcome;
  if (ArrayOf(settings.GetValue(SMSettingsManager::MasterDomain(), kKnownSites.name)) == nullptr) {
    outcome.nothingRecorded = true;
    return outcome;
  }
  if (request.siteDataAndSettings) {
    // Both deletions are always attempted, the asset cache after the sites.
    bool sitesDeleted = settings.RemoveAllSites(true);
    bool cacheDeleted = platform.DeleteTree(platform.AssetCacheFolder());
    outcome.siteDataFailed = !(sitesDeleted && cacheDeleted);
    if (outcome.siteDataFailed)
      prompts.ErrorBox(TextId::kSiteDataNotDeleted, TextId::kUnableToDeleteCaption);
  }
  if (request.licenceFiles) {
    outcome.licenceFilesFailed = !privateData.DeleteLicenceFiles();
    if (outcome.licenceFilesFailed) {
      prompts.ErrorBox(TextId::kLicencesNotDeleted, TextId::kUnableToDeleteCaption);
    }
  }
  return outcome;
}
