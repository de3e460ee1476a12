// The per-site part of the settings manager: known sites, site files and stored site data.

#include "settings/setting_keys.h"
#include "settings/settings_manager.h"
#include "settings/site_name.h"
#include "settings/site_permissions.h"

const std::vector<SettingValue>& SMSettingsManager::SiteDefaultsOfThisRun() {
  // Read at the first site creation of a run and kept: a later change of the global defaults
  // does not reach sites created afterwards in the same run, as with the player.
  if (!siteDefaults_) {
    std::vector<SettingValue> defaults;
    for (const SettingKey* key : kSiteDefaults) {
      const SettingValue* seed = key->seed ? GetValue(MasterDomain(), key->seed->name) : nullptr;
      if (seed != nullptr && seed->type() == key->type) {
        defaults.push_back(*seed);
        defaults.back().set_name(key->name);
      } else {
        defaults.push_back(DefaultValueOf(*key));
      }
    }
    siteDefaults_ = std::move(defaults);
  }
  return *siteDefaults_;
}

bool SMSettingsManager::EnsureSiteDefaults(const std::string& site) {
  SettingsTable& table = *GetSettingsTable(site);
  for (const SettingValue& value : SiteDefaultsOfThisRun()) {
    if (!table.Contains(value.name())) table.Insert(value);
  }
  return WriteSettingsFile(site);
}

const SettingArray* SMSettingsManager::GetKnownSites() {
  if (!GetSettingsTable(MasterDomain())->Contains(kKnownSites.name)) LoadMasterSettings();
  return ArrayOf(GetValue(MasterDomain(), kKnownSites.name));
}

bool SMSettingsManager::StoreKnownSites(const SettingArray& sites) {
  return SetValue(MasterDomain(), SettingValue::Array(kKnownSites.name, sites));
}

SettingArray* SMSettingsManager::KnownSitesInPlace() {
  if (GetKnownSites() == nullptr) return nullptr;
  return &GetSettingsTable(MasterDomain())->Find(kKnownSites.name)->array();
}

// A site is added or removed in the master's own list, which is then written: storing a changed
// copy would give the same table and file, but copying a list of many thousand sites twice per
// change cost more than writing it.
bool SMSettingsManager::AddSite(const std::string& site) {
  if (const SettingArray* known = GetKnownSites()) {
    for (const SettingValue& element : *known) {
      if (element.name() == site) return true;
    }
  }
  if (!EnsureSiteDefaults(site)) return false;
  SettingValue element = SettingValue::Boolean(site, true);
  SettingArray* sites = KnownSitesInPlace();
  if (sites == nullptr) {
    SettingArray only;
    only.Append(std::move(element));
    return StoreKnownSites(only);
  }
  sites->Append(std::move(element));
  return WriteSettingsFile(MasterDomain());
}

bool SMSettingsManager::RemoveSite(const std::string& site, bool removeSettings) {
  const bool isMaster = site == MasterDomain();
  const bool dataRemoved = isMaster || RemoveSiteStoredData(site);
  if (!removeSettings || !dataRemoved) return dataRemoved;
  if (!DeleteSiteSettings(site, false)) return false;
  if (isMaster) return true;
  // The site's table stays cached, as in the player: reading the site again must not bring
  // its file back to disk.
  SettingArray* sites = KnownSitesInPlace();
  if (sites == nullptr) return StoreKnownSites(SettingArray());
  for (size_t index = sites->size(); index-- > 0;) {
    if ((*sites)[index].name() == site) {
      sites->RemoveAt(index);
      break;
    }
  }
  return WriteSettingsFile(MasterDomain());
}

bool SMSettingsManager::RemoveSiteStoredData(const std::string& site) {
  // A folder a deletion must not touch holds nothing of this site's own: nothing to delete.
  std::optional<std::string> folder = SiteFolderIn(storedDataFolder_, site);
  const bool removed = !folder || platform_.DeleteTree(*folder);
  // Sandboxed browsers keep the same site's data under the app-container folder; only the main
  // folder's result counts, as with the player.
  if (std::optional<std::string> container = SiteFolderIn(appContainerFolder_, site)) {
    platform_.DeleteTree(*container);
  }
  return removed;
}

bool SMSettingsManager::DeleteSiteSettings(const std::string& site, bool fileOnly) {
  // A site without a settings folder of its own has no settings on disk to delete.
  std::optional<std::string> path = fileOnly ? SettingsFileOf(site) : SettingsFolderOf(site);
  return !path || platform_.DeleteTree(*path);
}

uint64_t SMSettingsManager::GetSiteStoredBytes(const std::string& baseFolder,
                                               const std::string& site) {
  if (site == MasterDomain()) return 0;
  auto bytesOf = [&](const std::string& name) -> uint64_t {
    std::optional<std::string> folder = SiteFolderIn(baseFolder, name);
    return folder ? platform_.TreeSize(*folder) : 0;
  };
  // "local" is kept in two folders, never in one named "local".
  if (site == "local") return bytesOf("localhost") + bytesOf("#localWithNet");
  return bytesOf(site);
}

bool SMSettingsManager::RemoveAllSites(bool includeSettings) {
  const std::string separator = platform_.PathSeparator();
  bool settingsRemoved = true;
  if (includeSettings) {
    settingsRemoved = platform_.DeleteTree(settingsFolder_);
    platform_.CreateFolder(settingsFolder_, ".");
    // The global settings stay in memory and go back to disk with an empty list of sites. What
    // this reports is whether the settings were deleted; a master file that cannot be written
    // again keeps the values in memory for the next change.
    (void)StoreKnownSites(SettingArray());
    (void)WriteSettingsFile(MasterDomain());
  }
  bool dataRemoved = true;
  const std::string sharedObjects = dataRoot_ + separator + "#SharedObjects";
  if (std::optional<std::vector<std::string>> entries = platform_.ListEntries(sharedObjects)) {
    for (const std::string& entry : *entries) {
      if (entry == "." || entry == "..") continue;
      dataRemoved = platform_.DeleteTree(sharedObjects + separator + entry) && dataRemoved;
    }
  }
  const bool cacheRemoved = platform_.DeleteTree(platform_.VXCacheFolder());
  return settingsRemoved && dataRemoved && cacheRemoved;
}

void SMSettingsManager::PruneKnownSites() {
  SettingValue* domains = GetSettingsTable(MasterDomain())->Find(kKnownSites.name);
  if (domains == nullptr || domains->type() != kSettingArray) return;
  // A long list loses its sites in one pass: removing them one at a time would move the rest
  // of the list for each.
  domains->array().RemoveIf([&](const SettingValue& site) {
    std::optional<std::string> file = SettingsFileOf(site.name());
    return !file || platform_.FileSize(*file) == 0;
  });
}
