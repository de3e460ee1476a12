// Interim stand-in until the settings store lands; deleted then. It stores nothing.
#include "settings/settings_manager.h"

SettingValue::SettingValue() = default;
SettingValue::~SettingValue() = default;

SMSettingsManager::SMSettingsManager(SMPlatformServices&) {}
SMSettingsManager::~SMSettingsManager() = default;
bool SMSettingsManager::RemoveSiteStoredData(const std::string&) {
  return false;
}
const std::string& SMSettingsManager::MasterDomain() {
  static const std::string master = "___MASTER_DOMAIN";
  return master;
}
const SettingValue* SMSettingsManager::GetValue(const std::string&, const std::string&) {
  return nullptr;
}
bool SMSettingsManager::SetValue(const std::string&, const SettingValue&) {
  return false;
}
const SettingArray* SMSettingsManager::GetKnownSites() {
  return nullptr;
}
