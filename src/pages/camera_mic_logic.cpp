#include "pages/camera_mic_logic.h"

#include <string>
#include <vector>

#include "admincfg/parse_bool.h"
#include "settings/setting_keys.h"
#include "settings/site_permissions.h"

int CameraMicIndexForAlways(std::optional<bool> defaultalways) {
  return defaultalways.value_or(false) ? kCameraMicBlock : kCameraMicAsk;
}

int ReadCameraMicIndex(SMSettingsManager& settings) {
  return CameraMicIndexForAlways(
      settings.GetValueAs<bool>(SMSettingsManager::MasterDomain(), kDefaultAlways.name));
}

bool IsCameraMicLockedByAdministrator(const SMAdminConfig& adminConfig) {
  return ParseBool(adminConfig.GetValue("AVHardwareDisable").value_or(""));
}

int ApplyCameraMicChoice(SMSettingsManager& settings, int chosenIndex) {
  const bool block = chosenIndex == kCameraMicBlock;
  if (!settings.SetValue(SMSettingsManager::MasterDomain(),
                         SettingValue::Boolean(kDefaultAlways.name, block))) {
    return chosenIndex;
  }
  // No site keeps a permission: each becomes a remembered denial or asks again. A site that
  // cannot be written keeps its old answers; the others are still changed.
  const SiteChoice siteChoice = block ? kChoiceBlock : kChoiceAsk;
  for (const std::string& site : KnownSiteNames(settings)) {
    if (site.empty()) continue;
    (void)WriteSiteChoice(settings, site, SitePermission::kCameraOther, siteChoice);
    (void)WriteSiteChoice(settings, site, SitePermission::kCameraSecure, siteChoice);
  }
  return chosenIndex;
}
