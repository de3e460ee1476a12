#pragma once

#include <memory>
#include <optional>
#include <string>

#include "admincfg/admin_config.h"
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
};

// The program's central objects for one command, built on first use.
class CliContext {
 public:
  explicit CliContext(GlobalOptions options);
  ~CliContext();

  const GlobalOptions& options() const { return options_; }
  // Decides the three base folders; a message naming the missing option when one is unknown.
  std::optional<std::string> ResolveFolders();

  SMSystem& system();
  SMPlatformServices& platform();
  SMSettingsManager& settings();
  SMAdminConfig& adminConfig();
  SMPrivateDataFolder& privateData();
  SMStringTable& strings();

 private:
  GlobalOptions options_;
  std::unique_ptr<SMSystem> baseSystem_;
  std::unique_ptr<SMSystem> system_;
  std::unique_ptr<SMPlatformServices> platform_;
  std::unique_ptr<SMSettingsManager> settings_;
  std::unique_ptr<SMAdminConfig> adminConfig_;
  std::unique_ptr<SMPrivateDataFolder> privateData_;
  std::unique_ptr<SMStringTable> strings_;
};
