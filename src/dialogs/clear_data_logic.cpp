#include "dialogs/clear_data_logic.h"

#include "platform/private_data_folder.h"
#include "settings/settings_manager.h"

ClearDataOutcome ClearAllData(SMSettingsManager& settings, SMPlatformServices& platform,
                              SMPrivateDataFolder& privateData, ClearDataRequest request) {
  ClearDataOutcome outcome;
  const SettingValue* domains = settings.GetValue(SMSettingsManager::MasterDomain(), "domains");
  if (domains == nullptr || domains->type() != kSettingArray) {
    outcome.nothingRecorded = true;
    return outcome;
  }
  if (request.siteDataAndSettings) {
    // Both deletions are always attempted, the asset cache after the sites.
    bool sitesDeleted = settings.RemoveAllSites(true);
    bool cacheDeleted = platform.DeleteTree(platform.AssetCacheFolder());
    outcome.siteDataFailed = !(sitesDeleted && cacheDeleted);
  }
  if (request.licenceFiles) {
    outcome.licenceFilesFailed = !privateData.DeleteLicenceFiles();
  }
  return outcome;
}
