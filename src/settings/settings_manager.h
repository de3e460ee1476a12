#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/platform_services.h"
#include "settings/setting_value.h"
#include "settings/settings_table.h"

// The one object through which every page and dialog reads and changes the player's settings:
// the master (global) settings under MasterDomain() and one settings file per site. Every change
// is written to disk at once.
class SMSettingsManager {
 public:
  // kReadOnly is for callers that only look: defaults and unreadable files are kept in memory
  // as usual, but nothing reaches the disk and every write reports failure.
  enum class Access { kReadWrite, kReadOnly };

  explicit SMSettingsManager(SMPlatformServices& platform, Access access = Access::kReadWrite);
  virtual ~SMSettingsManager();

  // Deletes the site's stored data (also under "#AppContainer" on Windows).
  [[nodiscard]] virtual bool RemoveSiteStoredData(const std::string& site);

  static const std::string& MasterDomain();  // "___MASTER_DOMAIN"
  // Where the settings files of the player's data root are kept.
  static std::string SettingsFolderIn(SMPlatformServices& platform);

  bool LoadMasterSettings();
  // The cached table of a domain; an absent or unreadable file is replaced by an empty one.
  SettingsTable* GetSettingsTable(const std::string& domain);
  const SettingValue* GetValue(const std::string& domain, const std::string& name);
  // The value's payload when it is present with the type T (see ValueAs), else nothing.
  template <typename T>
  std::optional<T> GetValueAs(const std::string& domain, const std::string& name) {
    return ValueAs<T>(GetValue(domain, name));
  }
  std::vector<std::string> GetNames(const std::string& domain);
  // Inserts or replaces the value and writes the domain's file; the write's result. A failed
  // write leaves the new value in memory, and the next write of the domain stores it.
  [[nodiscard]] bool SetValue(const std::string& domain, const SettingValue& value);
  // As SetValue, but when the write fails the domain holds its former value again (or none),
  // so that memory matches the file and a later write of another value does not store this one.
  [[nodiscard]] bool SetValueOrRestore(const std::string& domain, const SettingValue& value);
  [[nodiscard]] bool WriteSettingsFile(const std::string& domain);
  [[nodiscard]] bool EnsureGlobalDefaults();

  // Per-site settings.
  [[nodiscard]] bool EnsureSiteDefaults(const std::string& site);
  // The master list of known sites, or nullptr.
  const SettingArray* GetKnownSites();
  [[nodiscard]] bool AddSite(const std::string& site);
  [[nodiscard]] bool RemoveSite(const std::string& site, bool removeSettings);
  [[nodiscard]] bool DeleteSiteSettings(const std::string& site, bool fileOnly);
  uint64_t GetSiteStoredBytes(const std::string& baseFolder, const std::string& site);
  [[nodiscard]] bool RemoveAllSites(bool includeSettings);
  void PruneKnownSites();

  const std::string& dataRoot() const;
  const std::string& storedDataFolder() const;
  const std::string& settingsFolder() const;
  // The settings file of a domain; nothing for a site name without a settings folder of its
  // own (see HasOwnSettingsFolder).
  std::optional<std::string> SettingsFileOf(const std::string& domain) const;

  // The folder of site data kept for sandboxed browsers (Windows only; empty elsewhere).
  const std::string& appContainerFolder() const { return appContainerFolder_; }

 protected:
  SMPlatformServices& platform() { return platform_; }

 private:
  // The values a new site file is completed with, some taken from the master file once per run.
  const std::vector<SettingValue>& SiteDefaultsOfThisRun();
  // A settings file read whole and parsed: its table, or why there is none.
  struct FileRead {
    enum class Failure {
      kNone,        // the table is there
      kAbsent,      // the file could not be opened
      kUnreadable,  // what could be read of it is not a settings file
    };
    std::unique_ptr<SettingsTable> table;
    Failure failure = Failure::kNone;
  };
  FileRead ReadSettingsFile(const std::string& path);
  // The folder of a domain's settings; nothing where SettingsFileOf gives nothing.
  std::optional<std::string> SettingsFolderOf(const std::string& domain) const;
  // The folder of a site's stored data inside a base folder, or nothing when a deletion must not
  // touch it (see MayDeleteSiteFolder).
  std::optional<std::string> SiteFolderIn(const std::string& baseFolder,
                                          const std::string& site) const;
  [[nodiscard]] bool StoreKnownSites(const SettingArray& sites);
  // The master list of known sites itself, to change before writing the master file; nullptr
  // when GetKnownSites has none.
  SettingArray* KnownSitesInPlace();

  std::string dataRoot_;
  std::string storedDataFolder_;
  SMPlatformServices& platform_;
  std::map<std::string, std::unique_ptr<SettingsTable>> cache_;
  std::string settingsFolder_;
  std::string appContainerFolder_;
  std::optional<std::vector<SettingValue>> siteDefaults_;
  Access access_;
};
