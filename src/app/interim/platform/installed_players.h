#pragma once
// Interim stand-in until the installed-players module lands; deleted then.

#include <optional>
#include <string>

#include "admincfg/admin_config.h"
#include "platform/system.h"

enum class PlayerKind { kActiveX, kNpapi, kPpapi };
enum PlayerProbe : int {
  PlayerNotInstalled = 0,
  PlayerInstalled = 16,
  PlayerInstalledPartner = 17
};

int ProbePlayerKey(SMSystem& system, PlayerKind kind);
bool WantsUpdatesPage(SMSystem& system);
std::optional<std::string> ReadPlayerVersion(SMSystem& system, PlayerKind kind);
int ReadUpdateMode(const SMAdminConfig* adminConfig);
bool ApplyUpdateMode(SMSystem& system, SMAdminConfig* adminConfig, int mode);
void RelaunchElevated(SMSystem& system);
