#include "cli/cli_context.h"

#include <cstdlib>
#include <filesystem>
#include <utility>

#include "cli/folder_override_system.h"
#include "platform/file_io.h"
#include "settings/setting_keys.h"

#ifdef _WIN32
#include "platform/win32/win32_platform.h"
#include "platform/win32/win32_system.h"
#else
#include "platform/posix/posix_platform.h"
#include "platform/posix/posix_system.h"
#endif

namespace {

std::string Environment(const char* name) {
  const char* value = name != nullptr ? std::getenv(name) : nullptr;
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

// The platform's own operations, noting each failed deletion and folder creation with the
// system's reason, so that the tool can say what failed where the program only shows a box.
template <typename Platform>
class FailureNotingPlatform : public Platform {
 public:
  FailureNotingPlatform(SMSystem& system, std::vector<NotedFailure>& failures)
      : Platform(system), failures_(failures) {}

  bool DeleteTree(const std::string& path) override {
    ClearSystemError();
    return Noted(Platform::DeleteTree(path), "delete", path);
  }
  bool CreateFolder(const std::string& parent, const std::string& name) override {
    ClearSystemError();
    const std::string folder = name == "." ? parent : parent + this->PathSeparator() + name;
    return Noted(Platform::CreateFolder(parent, name), "create", folder);
  }

 private:
  bool Noted(bool succeeded, const char* what, const std::string& path) {
    if (!succeeded) failures_.push_back({what, path, LastSystemError()});
    return succeeded;
  }

  std::vector<NotedFailure>& failures_;
};

}  // namespace

CliContext::CliContext(GlobalOptions options) : options_(std::move(options)) {}

CliContext::~CliContext() {
  if (privateData_) privateData_->ForgetPlatform();
}

std::optional<Refusal> CliContext::ResolveFolders() {
  std::optional<std::filesystem::path> profile;
  std::filesystem::path driveC = std::filesystem::path(options_.winePrefix) / "drive_c";
  if (!options_.winePrefix.empty()) {
    profile = driveC / "users" / WineUser(driveC / "users") / "AppData";
  }
  struct Resolved {
    const FolderOption& option;
    std::optional<std::filesystem::path> fromPrefix;
    std::string path;
    std::string source;  // the option or variable that named it
  } folders[] = {
      {kRoamingFolder, profile ? std::optional(*profile / "Roaming") : std::nullopt, "", ""},
      {kLocalFolder, profile ? std::optional(*profile / "Local") : std::nullopt, "", ""},
      {kSystemFolder, profile ? std::optional(driveC / "windows" / "syswow64") : std::nullopt, "",
       ""},
  };
  for (Resolved& folder : folders) {
    folder.path = options_.*folder.option.value;
    folder.source = folder.option.option;
    if (folder.path.empty() && folder.fromPrefix) {
      folder.path = folder.fromPrefix->string();
      folder.source = kWinePrefix.option;
    }
#ifndef _WIN32
    // Elsewhere than on Windows every folder must be named.
    if (folder.path.empty()) {
      folder.path = Environment(folder.option.environment);
      folder.source = std::string("the variable ") + folder.option.environment;
    }
    if (folder.path.empty()) {
      return Refusal{kExitUsage, std::string("no ") + folder.option.help + ": give " +
                                     folder.option.option + " DIR or set " +
                                     folder.option.environment};
    }
#endif
  }
#ifdef _WIN32
  baseSystem_ = std::make_unique<Win32System>();
#else
  baseSystem_ = std::make_unique<PosixSystem>(
      PosixFolders{folders[0].path, folders[1].path, folders[2].path});
#endif
  system_ = std::make_unique<FolderOverrideSystem>(*baseSystem_, folders[0].path, folders[1].path,
                                                   folders[2].path);
  // The data paths built on each folder, so that a folder that cuts one short is refused.
  SMPlatformServices& services = platform();
  const bool local = services.enableLocalAppData();
  std::vector<std::string> builtOn[] = {
      {services.AssetCacheFolder(), services.VXCacheFolder(), services.PrivateDataFolder()},
      {},
      {AdminConfigFilePath(system())},
  };
  builtOn[local ? 1 : 0].push_back(services.PlayerDataRoot());
  for (size_t index = 0; index < std::size(folders); ++index) {
    if (folders[index].path.empty()) continue;
    if (std::optional<Refusal> refusal =
            RefuseUnusableFolder(folders[index].source, folders[index].path, builtOn[index])) {
      return refusal;
    }
  }
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
    platform_ = std::make_unique<FailureNotingPlatform<Win32PlatformServices>>(system(), failures_);
#else
    platform_ = std::make_unique<FailureNotingPlatform<PosixPlatformServices>>(system(), failures_);
#endif
  }
  return *platform_;
}

std::string CliContext::MasterFile() {
  return SMSettingsManager::SettingsFolderIn(platform()) + platform().PathSeparator() +
         kSettingsFileName;
}

std::optional<Refusal> CliContext::OpenStore(StoreUse use) {
  // Checked before the store starts: starting it replaces an unreadable master file.
  std::optional<Refusal> refusal;
  if (use == StoreUse::kShow) refusal = RefuseShowingUnreadable(MasterFile());
  if (use == StoreUse::kChange) refusal = RefuseReplacingUnreadable(MasterFile(), options_.force);
  if (refusal) return refusal;
  settings_ = std::make_unique<SMSettingsManager>(
      platform(), use == StoreUse::kChange ? SMSettingsManager::Access::kReadWrite
                                           : SMSettingsManager::Access::kReadOnly);
  return std::nullopt;
}

SMSettingsManager& CliContext::settings() {
  if (!settings_) {
    settings_ =
        std::make_unique<SMSettingsManager>(platform(), SMSettingsManager::Access::kReadOnly);
  }
  return *settings_;
}

std::vector<NotedFailure> CliContext::TakeFailures() {
  return std::exchange(failures_, {});
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
