#include "ui_profile.h"

#include <windows.h>

#include <cstdio>
#include <filesystem>

#include "admincfg/admin_config.h"
#include "platform/file_io.h"
#include "platform/win32/utf16.h"
#include "settings/settings_reader.h"

namespace {

std::wstring KeyOf(PlayerKind kind) {
  return ToUtf16(PlayerKey(kind)).value_or(L"");
}

}  // namespace

UiProfile::UiProfile() : platform_(std::make_unique<Win32PlatformServices>(system_)) {
  Clear();
  // The player has run here: its settings folder exists, though it holds no file yet. (The
  // program creates at most one missing folder level per write, as the player does.)
  std::error_code error;
  std::filesystem::create_directories(
      ToUtf16(SMSettingsManager::SettingsFolderIn(*platform_)).value_or(L""), error);
}

UiProfile::~UiProfile() {
  Clear();
}

void UiProfile::Clear() {
  for (PlayerKind kind : {PlayerKind::ActiveX, PlayerKind::Npapi, PlayerKind::Ppapi}) {
    RegDeleteKeyExW(HKEY_LOCAL_MACHINE, KeyOf(kind).c_str(), KEY_WOW64_32KEY, 0);
  }
  platform_->DeleteTree(platform_->PlayerDataRoot());
  platform_->DeleteTree(platform_->AssetCacheFolder());
  platform_->DeleteTree(platform_->PrivateDataFolder());
  DeleteFileW(ToUtf16(AdminConfigFilePath(system_)).value_or(L"").c_str());
}

bool UiProfile::WriteAdminConfig(const std::vector<std::pair<std::string, std::string>>& entries) {
  const std::string& path = AdminConfigFilePath(system_);
  std::error_code error;
  std::filesystem::create_directories(
      std::filesystem::path(ToUtf16(path).value_or(L"")).parent_path(), error);
  SMAdminConfig config(path);
  for (const auto& [key, value] : entries) config.SetValue(key, value);
  return config.WriteToFile();
}

void UiProfile::AddPlayer(PlayerKind kind, const std::wstring& version) {
  HKEY key = nullptr;
  if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, KeyOf(kind).c_str(), 0, nullptr, 0,
                      KEY_SET_VALUE | KEY_WOW64_32KEY, nullptr, &key, nullptr) != ERROR_SUCCESS) {
    return;
  }
  RegSetValueExW(key, L"Version", 0, REG_SZ, reinterpret_cast<const BYTE*>(version.c_str()),
                 static_cast<DWORD>((version.size() + 1) * sizeof(wchar_t)));
  RegCloseKey(key);
}

bool UiProfile::SetGlobal(const SettingValue& value) {
  // A fresh manager each time: it reads the file as it is now, like a second program.
  SMSettingsManager settings(*platform_);
  return settings.SetValue(SMSettingsManager::MasterDomain(), value);
}

bool UiProfile::AddSites(const std::vector<std::string>& sites) {
  SMSettingsManager settings(*platform_);
  bool added = true;
  for (const std::string& site : sites) added = settings.AddSite(site) && added;
  return added;
}

std::string UiProfile::SettingsFile(const std::string& domain) {
  std::string folder = SMSettingsManager::SettingsFolderIn(*platform_);
  if (domain == SMSettingsManager::MasterDomain()) return folder + "\\settings.sol";
  return folder + "\\#" + domain + "\\settings.sol";
}

std::optional<SettingValue> UiProfile::Stored(const std::string& domain, const std::string& name) {
  std::optional<std::string> bytes = ReadWholeFile(SettingsFile(domain));
  if (!bytes) return std::nullopt;
  std::string objectName;
  std::unique_ptr<SettingsTable> table = SMSettingsReader(*bytes).Parse(&objectName);
  const SettingValue* value = table ? table->Find(name) : nullptr;
  if (value == nullptr) return std::nullopt;
  return *value;
}

std::optional<std::vector<std::string>> UiProfile::StoredNames(const std::string& domain,
                                                               const std::string& name) {
  std::optional<SettingValue> value = Stored(domain, name);
  if (!value || value->type() != kSettingArray) return std::nullopt;
  std::vector<std::string> names;
  for (const SettingValue& element : value->array()) names.push_back(element.name());
  return names;
}

std::string UiProfile::StoredDataFile(const std::string& site) {
  std::string folder = platform_->PlayerDataRoot() + "\\#SharedObjects";
  for (const std::string& part : {std::string("QX7T2"), site}) {
    platform_->CreateFolder(folder, part);
    folder += "\\" + part;
  }
  return folder + "\\game.sol";
}
