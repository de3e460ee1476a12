#include "cli/cli_context.h"

#include <cstdlib>
#include <filesystem>

#include "cli/folder_override_system.h"

#ifdef _WIN32
#include "platform/win32/win32_platform.h"
#include "platform/win32/win32_system.h"
#else
#include "platform/posix/posix_platform.h"
#include "platform/posix/posix_system.h"
#endif

namespace {

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

// The Wine user whose profile the prefix holds: $USER when it has a folder there, else the
// only user folder besides "Public".
std::string WineUser(const std::filesystem::path& users) {
  std::string user = Environment("USER");
  std::error_code error;
  if (!user.empty() && std::filesystem::is_directory(users / user, error)) return user;
  std::string found;
  for (const auto& entry : std::filesystem::directory_iterator(users, error)) {
    std::string name = entry.path().filename().string();
    if (name != "Public" && entry.is_directory(error)) found = name;
  }
  return found.empty() ? user : found;
}

}  // namespace

CliContext::CliContext(GlobalOptions options) : options_(std::move(options)) {}

CliContext::~CliContext() {
  if (privateData_) privateData_->ForgetPlatform();
}

std::optional<std::string> CliContext::ResolveFolders() {
  std::string roaming = options_.appData;
  std::string local = options_.localAppData;
  std::string systemFolder = options_.systemDir;
  if (!options_.winePrefix.empty()) {
    std::filesystem::path driveC = std::filesystem::path(options_.winePrefix) / "drive_c";
    std::filesystem::path profile = driveC / "users" / WineUser(driveC / "users") / "AppData";
    if (roaming.empty()) roaming = (profile / "Roaming").string();
    if (local.empty()) local = (profile / "Local").string();
    if (systemFolder.empty()) systemFolder = (driveC / "windows" / "syswow64").string();
  }
#ifdef _WIN32
  baseSystem_ = std::make_unique<Win32System>();
#else
  if (roaming.empty()) roaming = Environment("APPDATA");
  if (local.empty()) local = Environment("LOCALAPPDATA");
  if (systemFolder.empty()) systemFolder = Environment("VP_SYSTEM_DIR");
  if (roaming.empty())
    return "no roaming application-data folder: give --appdata DIR or set APPDATA";
  if (local.empty()) {
    return "no local application-data folder: give --local-appdata DIR or set LOCALAPPDATA";
  }
  if (systemFolder.empty()) {
    return "no 32-bit system folder: give --system-dir DIR or set VP_SYSTEM_DIR";
  }
  baseSystem_ = std::make_unique<PosixSystem>(PosixFolders{roaming, local, systemFolder});
#endif
  system_ = std::make_unique<FolderOverrideSystem>(*baseSystem_, roaming, local, systemFolder);
  return std::nullopt;
}

SMSystem& CliContext::system() {
  if (!system_) {
#ifdef _WIN32
    if (!baseSystem_) baseSystem_ = std::make_unique<Win32System>();
#else
    if (!baseSystem_) baseSystem_ = std::make_unique<PosixSystem>(PosixFolders{});
#endif
    system_ = std::make_unique<FolderOverrideSystem>(*baseSystem_, "", "", "");
  }
  return *system_;
}

SMPlatformServices& CliContext::platform() {
  if (!platform_) {
#ifdef _WIN32
    platform_ = std::make_unique<Win32PlatformServices>(system());
#else
    platform_ = std::make_unique<PosixPlatformServices>(system());
#endif
  }
  return *platform_;
}

SMSettingsManager& CliContext::settings() {
  if (!settings_) settings_ = std::make_unique<SMSettingsManager>(platform());
  return *settings_;
}

SMAdminConfig& CliContext::adminConfig() {
  if (!adminConfig_) adminConfig_ = std::make_unique<SMAdminConfig>(AdminConfigFilePath(system()));
  return *adminConfig_;
}

SMPrivateDataFolder& CliContext::privateData() {
  if (!privateData_) {
    privateData_ =
        std::make_unique<SMPrivateDataFolder>(platform().PrivateDataFolder(), &platform());
  }
  return *privateData_;
}

SMStringTable& CliContext::strings() {
  if (!strings_) strings_ = std::make_unique<SMUserLanguageStringTable>(system());
  return *strings_;
}
