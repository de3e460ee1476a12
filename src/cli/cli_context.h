#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "admincfg/admin_config.h"
#include "cli/refusals.h"
#include "l10n/string_table.h"
#include "platform/platform_services.h"
#include "platform/private_data_folder.h"
#include "platform/system.h"
#include "settings/settings_manager.h"

// The options every command shares.
struct GlobalOptions {
  std::string appData;
  std::string localAppData;
  std::string systemDir;
  std::string winePrefix;
  bool json = false;
  bool force = false;  // replace files that cannot be read
};

// A folder the user can name. Off Windows its environment variable stands in for a missing
// option; the three folders of a Wine prefix stand in for both.
struct FolderOption {
  const char* option;
  const char* environment;  // nullptr when there is none
  std::string GlobalOptions::*value;
  const char* help;
};
inline constexpr FolderOption kRoamingFolder = {"--appdata", "APPDATA", &GlobalOptions::appData,
                                                "roaming application-data folder"};
inline constexpr FolderOption kLocalFolder = {"--local-appdata", "LOCALAPPDATA",
                                              &GlobalOptions::localAppData,
                                              "local application-data folder"};
inline constexpr FolderOption kSystemFolder = {
    "--system-dir", "VP_SYSTEM_DIR", &GlobalOptions::systemDir,
    "folder that holds Tessalin/Vantrel/tss.cfg (the 32-bit system folder)"};
inline constexpr FolderOption kWinePrefix = {
    "--wineprefix", nullptr, &GlobalOptions::winePrefix,
    "take the three folders of the default user of this Wine prefix"};
inline constexpr const FolderOption* kFolderOptions[] = {&kRoamingFolder, &kLocalFolder,
                                                         &kSystemFolder, &kWinePrefix};

// How a command uses the store.
enum class StoreUse {
  kLocate,  // only its folders: the store writes nothing
  kShow,    // shows values: the master file must be readable; the store writes nothing
  kChange,  // writes: an unreadable master file is replaced only with --force
};

// A deletion or folder creation that failed, with the system's reason at that moment.
struct NotedFailure {
  std::string what;  // "delete" or "create"
  std::string path;
  std::string reason;
};

// The program's central objects for one command, built on first use.
class CliContext {
 public:
  explicit CliContext(GlobalOptions options);
  ~CliContext();

  const GlobalOptions& options() const { return options_; }
  // Decides the three base folders; a message naming the missing option when one is unknown.
  std::optional<Refusal> ResolveFolders();

  // Opens the store for the command, or says why the master file does not allow that use.
  std::optional<Refusal> OpenStore(StoreUse use);
  std::string MasterFile();

  SMSystem& system();
  SMPlatformServices& platform();
  // The store OpenStore opened; when it was not called, one that writes nothing.
  SMSettingsManager& settings();
  SMAdminConfig& adminConfig();
  SMPrivateDataFolder& privateData();
  SMStringTable& strings();

  // The platform's failed deletions and folder creations since the last call.
  std::vector<NotedFailure> TakeFailures();

 private:
  GlobalOptions options_;
  std::unique_ptr<SMSystem> baseSystem_;
  std::unique_ptr<SMSystem> system_;
  std::unique_ptr<SMPlatformServices> platform_;
  std::unique_ptr<SMSettingsManager> settings_;
  std::unique_ptr<SMAdminConfig> adminConfig_;
  std::unique_ptr<SMPrivateDataFolder> privateData_;
  std::unique_ptr<SMStringTable> strings_;
  std::vector<NotedFailure> failures_;
};
