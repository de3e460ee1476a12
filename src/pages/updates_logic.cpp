#include "pages/updates_logic.h"

#include "platform/installed_players.h"
#include "platform/update_service.h"

UpdatesFacts GatherUpdatesFacts(SMSystem& system, const SMAdminConfig& adminConfig) {
  UpdatesFacts facts;
  facts.windows8OrLater = system.IsWindows8OrLater();
  facts.chromeMode = system.CommandLine().find("mode=chrome") != std::string::npos;
  facts.userAdmin = system.IsUserAdmin();
  facts.mode = ReadUpdateMode(adminConfig);
  // The ActiveX control does not exist from Windows 8 on; its key is not even read there.
  if (!facts.windows8OrLater) facts.activeXVersion = ReadPlayerVersion(system, PlayerKind::ActiveX);
  facts.npapiVersion = ReadPlayerVersion(system, PlayerKind::Npapi);
  facts.ppapiVersion = ReadPlayerVersion(system, PlayerKind::Ppapi);
  return facts;
}

UpdatesView ComputeUpdatesView(const UpdatesFacts& facts) {
  UpdatesView view;
  view.mode = facts.mode;
  view.showActiveXLine = !facts.windows8OrLater;
  view.activeXVersion = facts.activeXVersion;
  view.npapiVersion = facts.npapiVersion;
  view.ppapiVersion = facts.ppapiVersion;
  bool noPluginVersion = !facts.npapiVersion && !facts.ppapiVersion;
  view.locked = facts.chromeMode || (facts.windows8OrLater && noPluginVersion);
  if (view.locked) {
    view.radiosEnabled = false;
    view.changeButtonVisible = false;
  } else {
    // An administrator changes the mode directly; anybody else goes through elevation.
    view.radiosEnabled = facts.userAdmin;
    view.changeButtonVisible = !facts.userAdmin;
  }
  return view;
}

int ApplyUpdatesChoice(SMSystem& system, SMAdminConfig* adminConfig, int previousMode,
                       int chosenMode) {
  return ApplyUpdateMode(system, adminConfig, chosenMode) ? chosenMode : previousMode;
}
