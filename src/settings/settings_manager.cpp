#include "settings/settings_manager.h"

#include <cstdio>
#include <vector>

#include "platform/file_io.h"
#include "settings/setting_keys.h"
#include "settings/settings_reader.h"
#include "settings/settings_writer.h"
#include "settings/site_name.h"
#include "settings/site_permissions.h"

namespace {

constexpr size_t kReadBlockSize = 65536;

}  // namespace

std::string SMSettingsManager::SettingsFolderIn(SMPlatformServices& platform) {
  return platform.PlayerDataRoot() + platform.PathSeparator() +
         NativeRelativePath("tessaline.com\\support\\vantrelplayer\\sys");
}

SMSettingsManager::SMSettingsManager(SMPlatformServices& platform, Access access)
    : platform_(platform), access_(access) {
  const std::string separator = platform_.PathSeparator();
  dataRoot_ = platform_.PlayerDataRoot();
  storedDataFolder_ = dataRoot_ + separator + "#SharedObjects";
  // The player names the sub-folder of its stored data; this program only follows it.
  std::optional<std::vector<std::string>> entries = platform_.ListEntries(storedDataFolder_);
  if (entries && !entries->empty()) storedDataFolder_ += separator + entries->front();
  settingsFolder_ = SettingsFolderIn(platform_);
#ifdef _WIN32
  appContainerFolder_ = storedDataFolder_ + separator + "#AppContainer";
#endif
  LoadMasterSettings();
}

SMSettingsManager::~SMSettingsManager() = default;

const std::string& SMSettingsManager::MasterDomain() {
  static const std::string masterDomain = "___MASTER_DOMAIN";
  return masterDomain;
}

const std::string& SMSettingsManager::dataRoot() const {
  return dataRoot_;
}
const std::string& SMSettingsManager::storedDataFolder() const {
  return storedDataFolder_;
}
const std::string& SMSettingsManager::settingsFolder() const {
  return settingsFolder_;
}

std::optional<std::string> SMSettingsManager::SettingsFolderOf(const std::string& domain) const {
  if (domain == MasterDomain()) return settingsFolder_;
  if (!HasOwnSettingsFolder(domain)) return std::nullopt;
  return settingsFolder_ + platform_.PathSeparator() + "#" + domain;
}

std::optional<std::string> SMSettingsManager::SettingsFileOf(const std::string& domain) const {
  std::optional<std::string> folder = SettingsFolderOf(domain);
  if (!folder) return std::nullopt;
  return *folder + platform_.PathSeparator() + kSettingsFileName;
}

std::optional<std::string> SMSettingsManager::SiteFolderIn(const std::string& baseFolder,
                                                           const std::string& site) const {
  if (baseFolder.empty() || !MayDeleteSiteFolder(site)) return std::nullopt;
  return baseFolder + platform_.PathSeparator() + site;
}

SMSettingsManager::FileRead SMSettingsManager::ReadSettingsFile(const std::string& path) {
  std::FILE* file = OpenFileUtf8(path, "rb");
  if (file == nullptr) return {nullptr, FileRead::Failure::kAbsent};
  // A read that fails midway leaves what came before it, parsed as if the file ended there.
  std::string bytes;
  std::vector<char> block(kReadBlockSize);
  for (size_t got; (got = std::fread(block.data(), 1, block.size(), file)) > 0;) {
    bytes.append(block.data(), got);
  }
  if (std::fclose(file) != 0) {
    // The message names the master file whatever file was read; the player words it so.
    LogSettingsMessage("SMSettingsManager: Unable to close master settings.sol file.\n");
  }
  std::string objectName;
  std::unique_ptr<SettingsTable> table = SMSettingsReader(bytes).Parse(&objectName);
  if (!table) return {nullptr, FileRead::Failure::kUnreadable};
  return {std::move(table), FileRead::Failure::kNone};
}

bool SMSettingsManager::LoadMasterSettings() {
  FileRead read = ReadSettingsFile(*SettingsFileOf(MasterDomain()));
  if (read.failure == FileRead::Failure::kUnreadable) {
    LogSettingsMessage(
        "SMSettingsManager: Pathological error when reading master settings.sol file.\n");
  }
  std::unique_ptr<SettingsTable> master = std::move(read.table);
  bool isNew = master == nullptr;
  if (isNew) master = std::make_unique<SettingsTable>();
  cache_.clear();
  cache_[MasterDomain()] = std::move(master);
  // A master file that cannot be written does not stop the start: the values stay in memory
  // and every later change tries the file again.
  if (isNew) (void)WriteSettingsFile(MasterDomain());
  (void)EnsureGlobalDefaults();
  if (!GetSettingsTable(MasterDomain())->Contains(kKnownSites.name)) {
    (void)SetValue(MasterDomain(), DefaultValueOf(kKnownSites));
  }
  PruneKnownSites();
  return true;
}

SettingsTable* SMSettingsManager::GetSettingsTable(const std::string& domain) {
  auto cached = cache_.find(domain);
  if (cached != cache_.end()) return cached->second.get();
  std::unique_ptr<SettingsTable> table;
  if (std::optional<std::string> file = SettingsFileOf(domain)) {
    table = ReadSettingsFile(*file).table;
  }
  // An absent or unreadable file is replaced by an empty one at once.
  bool isNew = table == nullptr;
  if (isNew) table = std::make_unique<SettingsTable>();
  SettingsTable* result = table.get();
  cache_[domain] = std::move(table);
  // An empty table serves all the same when that write fails; the next change tries again.
  if (isNew) (void)WriteSettingsFile(domain);
  return result;
}

const SettingValue* SMSettingsManager::GetValue(const std::string& domain,
                                                const std::string& name) {
  return GetSettingsTable(domain)->Find(name);
}

std::vector<std::string> SMSettingsManager::GetNames(const std::string& domain) {
  return GetSettingsTable(domain)->Names();
}

bool SMSettingsManager::SetValue(const std::string& domain, const SettingValue& value) {
  GetSettingsTable(domain)->Insert(value);
  return WriteSettingsFile(domain);
}

bool SMSettingsManager::SetValueOrRestore(const std::string& domain, const SettingValue& value) {
  SettingsTable& table = *GetSettingsTable(domain);
  std::optional<SettingValue> former;
  if (const SettingValue* current = table.Find(value.name())) former = *current;
  if (SetValue(domain, value)) return true;
  if (former) {
    table.Insert(std::move(*former));
  } else {
    table.Remove(value.name());
  }
  return false;
}

bool SMSettingsManager::WriteSettingsFile(const std::string& domain) {
  std::optional<std::string> folder = SettingsFolderOf(domain);
  if (!folder || access_ == Access::kReadOnly) return false;
  const SettingsTable& table = *GetSettingsTable(domain);
  const std::string objectName =
      domain == MasterDomain() ? kMasterObjectName : domain + kSiteObjectSuffix;
  return WriteSettingsStream(platform_, *folder, *SettingsFileOf(domain),
                             SerializeSettings(table, objectName));
}

bool SMSettingsManager::EnsureGlobalDefaults() {
  SettingsTable& master = *GetSettingsTable(MasterDomain());
  for (const SettingKey* key : kGlobalDefaults) {
    // A key of another type than its default is the player's business: it stays as it is.
    if (!master.Contains(key->name)) master.Insert(DefaultValueOf(*key));
  }
  return WriteSettingsFile(MasterDomain());
}
