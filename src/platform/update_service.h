#pragma once

#include <string>

#include "admincfg/admin_config.h"
#include "platform/system.h"

// How the player updates itself, kept in the administrator file as two keys.
enum UpdateMode : int {
  kUpdateAutomatically = 0,  // SilentAutoUpdateEnable=1, AutoUpdateDisable=0
  kUpdateNotify = 1,         // SilentAutoUpdateEnable=0, AutoUpdateDisable=0
  kUpdateNever = 2,          // SilentAutoUpdateEnable=0, AutoUpdateDisable=1
};

// How long one launch of the update service or an uninstaller may block the program.
inline constexpr uint32_t kLaunchTimeoutMs = 600000;
// The longest command line that is run, in UTF-16 characters.
inline constexpr size_t kMaxLaunchCommandLine = 259;

// Asks the shell to start this program again with administrator rights, on the page that
// changes the update mode. Ends this process (status 0) when the elevated copy started;
// returns when it did not (the user refused).
void RelaunchElevated(SMSystem& system);

// The mode the administrator file asks for; disabling updates wins over silent installs.
UpdateMode ReadUpdateMode(const SMAdminConfig& adminConfig);

// Tells the update service and the installed players about the mode, then stores the mode in
// the administrator file and reloads it from there. True only when the file was written,
// which needs administrator rights. A mode other than 0, 1, 2 does nothing and gives false.
bool ApplyUpdateMode(SMSystem& system, SMAdminConfig* adminConfig, int mode);

// Runs the update service beside this program with a switch ("-install", "-uninstall") and
// waits for it; true when it exited with code 0.
bool RunUpdateService(SMSystem& system, const std::string& serviceSwitch);
// Runs the PPAPI or NPAPI player's uninstaller with a switch that begins with a space
// (" -setppapinotification 1"); false when there is no uninstaller or it did not exit with 0.
bool RunPpapiUninstaller(SMSystem& system, const std::string& uninstallerSwitch);
bool RunNpapiUninstaller(SMSystem& system, const std::string& uninstallerSwitch);
