#include "dialogs/trusted_locations_logic.h"

#include <algorithm>
#include <optional>

#include "settings/setting_keys.h"
#include "settings/settings_manager.h"

namespace {

const SettingValue* StoredValue(SMSettingsManager& settings) {
  return settings.GetValue(SMSettingsManager::MasterDomain(), kTrustedPaths.name);
}

// A copy of the current array (empty when the setting is missing or not an array).
SettingArray CurrentLocations(SMSettingsManager& settings) {
  const SettingArray* locations = ArrayOf(StoredValue(settings));
  return locations != nullptr ? *locations : SettingArray();
}

TrustedChange Store(SMSettingsManager& settings, SettingArray locations) {
  // A failed write leaves the former locations in memory too: a later write of any other global
  // setting would otherwise store this change after all.
  return settings.SetValueOrRestore(SMSettingsManager::MasterDomain(),
                                    SettingValue::Array(kTrustedPaths.name, std::move(locations)))
             ? TrustedChange::kWritten
             : TrustedChange::kWriteFailed;
}

std::optional<size_t> IndexOf(const SettingArray& locations, const std::string& location) {
  for (size_t index = 0; index < locations.size(); ++index) {
    if (locations[index].name() == location) return index;
  }
  return std::nullopt;
}

}  // namespace

std::vector<std::string> TrustedLocations(SMSettingsManager& settings) {
  std::vector<std::string> names;
  for (const SettingValue& element : CurrentLocations(settings)) names.push_back(element.name());
  return names;
}

TrustedChange AddTrustedLocation(SMSettingsManager& settings, const std::string& location) {
  if (location.empty()) return TrustedChange::kUnchanged;
  SettingArray locations = CurrentLocations(settings);
  if (IndexOf(locations, location)) return TrustedChange::kAlreadyListed;
  locations.Append(SettingValue::Boolean(location, true));
  return Store(settings, std::move(locations));
}

TrustedChange RenameTrustedLocation(SMSettingsManager& settings, const std::string& former,
                                    const std::string& renamed) {
  if (renamed.empty() || renamed == former) return TrustedChange::kUnchanged;
  SettingArray locations = CurrentLocations(settings);
  if (IndexOf(locations, renamed)) return TrustedChange::kAlreadyListed;
  std::optional<size_t> index = IndexOf(locations, former);
  if (!index) return TrustedChange::kUnchanged;
  locations[*index].set_name(renamed);
  return Store(settings, std::move(locations));
}

TrustedChange RemoveTrustedLocations(SMSettingsManager& settings,
                                     const std::vector<std::string>& removed) {
  if (removed.empty()) return TrustedChange::kUnchanged;
  // One element goes for each selected row: another program may have listed a path twice, and
  // the user removed only the rows selected.
  std::vector<std::string> pending = removed;
  SettingArray kept;
  for (const SettingValue& element : CurrentLocations(settings)) {
    auto match = std::find(pending.begin(), pending.end(), element.name());
    if (match != pending.end()) {
      pending.erase(match);
    } else {
      kept.Append(element);
    }
  }
  return Store(settings, std::move(kept));
}

std::wstring PickerFilter(const std::wstring& description, const std::wstring& pattern) {
  std::wstring filter = description;
  filter.push_back(L'\0');
  filter += pattern;
  filter.push_back(L'\0');
  filter.push_back(L'\0');
  return filter;
}

std::wstring PickedPathText(const wchar_t* buffer, size_t capacity) {
  if (buffer == nullptr) return std::wstring();
  const wchar_t* end = std::find(buffer, buffer + capacity, L'\0');
  return std::wstring(buffer, end);
}
