#include "pages/camera_mic_logic.h"

#include <string>
#include <vector>

#include "admincfg/parse_bool.h"
#include "pages/global_values.h"

int CameraMicIndexForAlways(std::optional<bool> defaultalways) {
  return defaultalways.value_or(false) ? kCameraMicBlock : kCameraMicAsk;
}

int ReadCameraMicIndex(SMSettingsManager& settings) {
  return CameraMicIndexForAlways(GlobalBoolean(settings, "defaultalways"));
}

bool IsCameraMicLockedByAdministrator(const SMAdminConfig& adminConfig) {
  return ParseBool(adminConfig.GetValue("AVHardwareDisable").value_or(""));
}

int ApplyCameraMicChoice(SMSettingsManager& settings, int chosenIndex) {
  const bool block = chosenIndex == kCameraMicBlock;
  if (!settings.SetValue(SMSettingsManager::MasterDomain(),
                         SettingValue::Boolean("defaultalways", block))) {
    return chosenIndex;
  }
  std::vector<std::string> sites;
  if (const SettingArray* known = settings.GetKnownSites()) {
    for (const SettingValue& site : *known) sites.push_back(site.name());
  }
  // A site that cannot be written keeps its old answers; the others are still changed.
  for (const std::string& site : sites) {
    if (site.empty()) continue;
    settings.SetValue(site, SettingValue::Boolean("always", block));
    settings.SetValue(site, SettingValue::Boolean("allow", false));
    settings.SetValue(site, SettingValue::Boolean("alwayssecure", block));
    settings.SetValue(site, SettingValue::Boolean("allowsecure", false));
  }
  return chosenIndex;
}
