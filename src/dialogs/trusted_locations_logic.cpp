#include "dialogs/trusted_locations_logic.h"

#include <algorithm>

#include "settings/settings_manager.h"

namespace {

constexpr const char* kTrustedPathsKey = "trustedPaths";

// A copy of the current array (empty when the setting is missing or not an array).
SettingArray CurrentLocations(SMSettingsManager& settings) {
  const SettingValue* value =
      settings.GetValue(SMSettingsManager::MasterDomain(), kTrustedPathsKey);
  if (value == nullptr || value->type() != kSettingArray) return SettingArray();
  return value->array();
}

TrustedChange Store(SMSettingsManager& settings, SettingArray locations) {
  bool written = settings.SetValue(SMSettingsManager::MasterDomain(),
                                   SettingValue::Array(kTrustedPathsKey, std::move(locations)));
  return written ? TrustedChange::kWritten : TrustedChange::kWriteFailed;
}

bool Contains(const SettingArray& locations, const std::string& location) {
  return std::any_of(locations.begin(), locations.end(),
                     [&](const SettingValue& element) { return element.name() == location; });
}

}  // namespace

std::vector<std::string> TrustedLocations(SMSettingsManager& settings) {
  std::vector<std::string> names;
  for (const SettingValue& element : CurrentLocations(settings)) names.push_back(element.name());
  return names;
}

TrustedChange AddTrustedLocation(SMSettingsManager& settings, const std::string& location) {
  SettingArray locations = CurrentLocations(settings);
  if (location.empty() || Contains(locations, location)) return TrustedChange::kUnchanged;
  locations.Append(SettingValue::Boolean(location, true));
  return Store(settings, std::move(locations));
}

TrustedChange RenameTrustedLocation(SMSettingsManager& settings, const std::string& former,
                                    const std::string& renamed) {
  if (renamed.empty() || renamed == former) return TrustedChange::kUnchanged;
  SettingArray locations = CurrentLocations(settings);
  for (size_t i = 0; i < locations.size(); ++i) {
    if (locations[i].name() == former) {
      locations[i] = SettingValue::Boolean(renamed, true);
      return Store(settings, std::move(locations));
    }
  }
  return TrustedChange::kUnchanged;
}

TrustedChange RemoveTrustedLocations(SMSettingsManager& settings,
                                     const std::vector<std::string>& removed) {
  if (removed.empty()) return TrustedChange::kUnchanged;
  SettingArray locations = CurrentLocations(settings);
  SettingArray kept;
  for (const SettingValue& element : locations) {
    if (std::find(removed.begin(), removed.end(), element.name()) == removed.end()) {
      kept.Append(element);
    }
  }
  return Store(settings, std::move(kept));
}
