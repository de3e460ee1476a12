// Interim stand-in until the installed-players module lands; deleted then.
#include "admincfg/parse_bool.h"
#include "platform/installed_players.h"

namespace {
const char* KeyOf(PlayerKind kind) {
  switch (kind) {
    case PlayerKind::kActiveX:
      return "SOFTWARE\\Tessaline\\VantrelPlayerActiveX";
    case PlayerKind::kNpapi:
      return "SOFTWARE\\Tessaline\\VantrelPlayerPlugin";
    case PlayerKind::kPpapi:
      return "SOFTWARE\\Tessaline\\VantrelPlayerPepper";
  }
  return "";
}
}  // namespace

int ProbePlayerKey(SMSystem& system, PlayerKind kind) {
  auto root = SMSystem::RegistryRoot::LocalMachine32;
  if (!system.OpenRegistryKey(root, KeyOf(kind))) return PlayerNotInstalled;
  std::optional<uint32_t> partner = QueryRegistryNumber(system, root, KeyOf(kind), "isPartner");
  return partner.value_or(0) == 1 ? PlayerInstalledPartner : PlayerInstalled;
}

bool WantsUpdatesPage(SMSystem& system) {
  bool w8 = system.IsWindows8OrLater();
  int ppapi = ProbePlayerKey(system, PlayerKind::kPpapi);
  int npapi = ProbePlayerKey(system, PlayerKind::kNpapi);
  int activex = ProbePlayerKey(system, PlayerKind::kActiveX);
  if (w8) return ppapi == PlayerInstalled || npapi == PlayerInstalled;
  return ppapi == PlayerInstalled || npapi == PlayerInstalled || activex == PlayerInstalled;
}

std::optional<std::string> ReadPlayerVersion(SMSystem& system, PlayerKind kind) {
  SMSystem::RegistryQuery query{SMSystem::RegistryRoot::LocalMachine32, KeyOf(kind), "Version",
                                520};
  std::optional<std::vector<uint8_t>> bytes = system.QueryRegistryValue(query);
  if (!bytes) return std::nullopt;
  std::string text;
  for (size_t i = 0; i + 1 < bytes->size(); i += 2) {
    uint16_t unit = static_cast<uint16_t>((*bytes)[i] | ((*bytes)[i + 1] << 8));
    if (unit == 0) break;
    text.push_back(static_cast<char>(unit < 0x80 ? unit : '?'));
  }
  if (text.empty()) return std::nullopt;
  return text;
}

int ReadUpdateMode(const SMAdminConfig* adminConfig) {
  if (adminConfig == nullptr) return 1;
  if (ParseBool(adminConfig->GetValue("AutoUpdateDisable").value_or("0"))) return 2;
  if (ParseBool(adminConfig->GetValue("SilentAutoUpdateEnable").value_or("0"))) return 0;
  return 1;
}

bool ApplyUpdateMode(SMSystem&, SMAdminConfig*, int) {
  return false;
}

void RelaunchElevated(SMSystem&) {}
