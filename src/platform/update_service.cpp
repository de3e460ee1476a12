#include "platform/update_service.h"

#include <optional>

#include "admincfg/parse_bool.h"
#include "platform/installed_players.h"

namespace {

constexpr const char* kSilentKey = "SilentAutoUpdateEnable";
constexpr const char* kDisableKey = "AutoUpdateDisable";
// Appended to this program's folder; the trailing space separates the switch that follows.
constexpr const char* kUpdateServiceProgram = "Tessalin\\Vantrel\\VantrelPlayerUpdateService.exe ";

// The length of a UTF-8 text in UTF-16 characters, which is what Windows limits.
size_t Utf16Length(const std::string& text) {
  size_t length = 0;
  for (unsigned char byte : text) {
    if ((byte & 0xC0) != 0x80) ++length;  // every lead byte starts a character
    if (byte >= 0xF0) ++length;           // four-byte sequences need a surrogate pair
  }
  return length;
}

// Runs a command line and waits for it; true when it exited with code 0. A process still
// running when the wait ends reports the still-active code 259, so it counts as a failure.
bool RunToCompletion(SMSystem& system, const std::string& commandLine) {
  if (Utf16Length(commandLine) > kMaxLaunchCommandLine) return false;
  std::optional<uint32_t> exitCode = system.RunAndWait(commandLine, kLaunchTimeoutMs);
  return exitCode == 0u;
}

bool RunUninstaller(SMSystem& system, PlayerKind kind, const std::string& uninstallerSwitch) {
  std::optional<std::string> uninstaller = ReadUninstallerPath(system, kind);
  if (!uninstaller) return false;
  return RunToCompletion(system, *uninstaller + uninstallerSwitch);
}

// What one mode asks of the update service and the players, and the administrator keys.
struct ModeActions {
  const char* serviceSwitch;
  const char* ppapiSwitch;
  const char* npapiSwitch;
  bool skipScriptDebuggers;
  const char* silentValue;
  const char* disableValue;
};

std::optional<ModeActions> ActionsFor(int mode) {
  switch (mode) {
    case kUpdateAutomatically:
      return ModeActions{
          "-install", " -setppapinotification 1", " -setnpapinotification 1", true, "1", "0"};
    case kUpdateNotify:
      return ModeActions{
          "-uninstall", " -setppapinotification 1", " -setnpapinotification 1", true, "0", "0"};
    case kUpdateNever:
      // Turning notifications off reaches script-debugger builds too.
      return ModeActions{
          "-uninstall", " -setppapinotification 0", " -setnpapinotification 0", false, "0", "1"};
    default:
      return std::nullopt;
  }
}

}  // namespace

void RelaunchElevated(SMSystem& system) {
  // The start-page rule opens index 3 for this keyword, which is the Updates page whenever
  // the sheet has one.
  if (system.LaunchElevated(system.ModulePath(), "startupdialog=advanced")) {
    system.ExitProcess(0);
  }
}

UpdateMode ReadUpdateMode(const SMAdminConfig& adminConfig) {
  if (ParseBool(adminConfig.GetValue(kDisableKey).value_or("0"))) return kUpdateNever;
  if (ParseBool(adminConfig.GetValue(kSilentKey).value_or("0"))) return kUpdateAutomatically;
  return kUpdateNotify;
}

bool RunUpdateService(SMSystem& system, const std::string& serviceSwitch) {
  std::string modulePath = system.ModulePath();
  size_t lastSeparator = modulePath.rfind('\\');
  std::string folder =
      lastSeparator == std::string::npos ? std::string() : modulePath.substr(0, lastSeparator + 1);
  // Not quoted: the player's own tools start the service the same way.
  return RunToCompletion(system, folder + kUpdateServiceProgram + serviceSwitch);
}

bool RunPpapiUninstaller(SMSystem& system, const std::string& uninstallerSwitch) {
  return RunUninstaller(system, PlayerKind::Ppapi, uninstallerSwitch);
}

bool RunNpapiUninstaller(SMSystem& system, const std::string& uninstallerSwitch) {
  return RunUninstaller(system, PlayerKind::Npapi, uninstallerSwitch);
}

bool ApplyUpdateMode(SMSystem& system, SMAdminConfig* adminConfig, int mode) {
  std::optional<ModeActions> actions = ActionsFor(mode);
  if (!actions) return false;
  // The launches report failures, but the administrator file is what the player reads at its
  // next start, so it is written whatever they did.
  RunUpdateService(system, actions->serviceSwitch);
  if (!actions->skipScriptDebuggers || !IsScriptDebugger(system, PlayerKind::Ppapi)) {
    RunPpapiUninstaller(system, actions->ppapiSwitch);
  }
  if (!actions->skipScriptDebuggers || !IsScriptDebugger(system, PlayerKind::Npapi)) {
    RunNpapiUninstaller(system, actions->npapiSwitch);
  }
  if (adminConfig == nullptr) return false;
  adminConfig->SetValue(kSilentKey, actions->silentValue);
  adminConfig->SetValue(kDisableKey, actions->disableValue);
  bool written = adminConfig->WriteToFile();
  // Whatever happened, the object shows what the file now holds.
  adminConfig->Load();
  return written;
}
