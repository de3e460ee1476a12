#pragma once

#include <optional>
#include <string>

#include "admincfg/admin_config.h"
#include "platform/system.h"

// What the Updates page depends on.
struct UpdatesFacts {
  bool windows8OrLater = false;
  bool chromeMode = false;  // "mode=chrome" on the command line
  bool userAdmin = false;
  int mode = 1;  // 0 install automatically, 1 notify, 2 never check
  std::optional<std::string> activeXVersion;
  std::optional<std::string> npapiVersion;
  std::optional<std::string> ppapiVersion;
};

// How the page shows them.
struct UpdatesView {
  int mode = 1;
  bool showActiveXLine = true;
  // Locked: the page only informs. Radios, texts, version lines and Check Now are disabled and
  // the change button is hidden.
  bool locked = false;
  bool radiosEnabled = true;
  bool changeButtonVisible = false;
  // Version texts; nullopt shows "Not installed".
  std::optional<std::string> activeXVersion;
  std::optional<std::string> npapiVersion;
  std::optional<std::string> ppapiVersion;
};

UpdatesFacts GatherUpdatesFacts(SMSystem& system, const SMAdminConfig& adminConfig);
UpdatesView ComputeUpdatesView(const UpdatesFacts& facts);

// Stores a click on the radio group through the update service and the administrator file:
// the chosen mode, or the previous one when the file could not be written.
int ApplyUpdatesChoice(SMSystem& system, SMAdminConfig* adminConfig, int previousMode,
                       int chosenMode);
