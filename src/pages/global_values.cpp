#include "pages/global_values.h"

std::optional<double> GlobalNumber(SMSettingsManager& settings, const std::string& name) {
  const SettingValue* value = settings.GetValue(SMSettingsManager::MasterDomain(), name);
  if (value == nullptr || value->type() != kSettingNumber) return std::nullopt;
  return value->number();
}

std::optional<bool> GlobalBoolean(SMSettingsManager& settings, const std::string& name) {
  const SettingValue* value = settings.GetValue(SMSettingsManager::MasterDomain(), name);
  if (value == nullptr || value->type() != kSettingBoolean) return std::nullopt;
  return value->boolean();
}
