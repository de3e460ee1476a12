#include "platform/installed_players.h"

#include <cstdint>
#include <vector>

namespace {

constexpr SMSystem::RegistryRoot kPlayerRoot = SMSystem::RegistryRoot::LocalMachine32;

// The installers' uninstaller path is read into a 261-character buffer of which only 260
// bytes are offered to the query, as the player's own tools do.
constexpr uint32_t kUninstallerPathBytes = 260;
constexpr uint32_t kVersionBytes = 520;

void AppendUtf8(std::string& text, uint32_t codePoint) {
  if (codePoint < 0x80) {
    text += static_cast<char>(codePoint);
  } else if (codePoint < 0x800) {
    text += static_cast<char>(0xC0 | (codePoint >> 6));
    text += static_cast<char>(0x80 | (codePoint & 0x3F));
  } else if (codePoint < 0x10000) {
    text += static_cast<char>(0xE0 | (codePoint >> 12));
    text += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (codePoint & 0x3F));
  } else {
    text += static_cast<char>(0xF0 | (codePoint >> 18));
    text += static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
    text += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (codePoint & 0x3F));
  }
}

// A registry text value as UTF-8: UTF-16LE up to its first zero character (the buffer it was
// read into is zeroed, so a value stored without its terminator ends with the bytes read).
// An unpaired surrogate becomes U+FFFD.
std::string TextFromRegistryBytes(const std::vector<uint8_t>& bytes) {
  std::vector<uint16_t> units;
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    uint16_t unit = static_cast<uint16_t>(bytes[i] | (bytes[i + 1] << 8));
    if (unit == 0) break;
    units.push_back(unit);
  }
  std::string text;
  for (size_t i = 0; i < units.size(); ++i) {
    uint32_t unit = units[i];
    if (unit >= 0xD800 && unit < 0xDC00 && i + 1 < units.size() && units[i + 1] >= 0xDC00 &&
        units[i + 1] < 0xE000) {
      AppendUtf8(text, 0x10000 + ((unit - 0xD800) << 10) + (units[i + 1] - 0xDC00));
      ++i;
    } else if (unit >= 0xD800 && unit < 0xE000) {
      AppendUtf8(text, 0xFFFD);
    } else {
      AppendUtf8(text, unit);
    }
  }
  return text;
}

std::optional<std::string> ReadPlayerText(SMSystem& system, PlayerKind kind, const char* name,
                                          uint32_t bufferBytes) {
  std::optional<std::vector<uint8_t>> bytes =
      system.QueryRegistryValue({kPlayerRoot, PlayerKey(kind), name, bufferBytes});
  if (!bytes) return std::nullopt;
  return TextFromRegistryBytes(*bytes);
}

}  // namespace

const char* PlayerKey(PlayerKind kind) {
  switch (kind) {
    case PlayerKind::ActiveX:
      return "SOFTWARE\\Tessaline\\VantrelPlayerActiveX";
    case PlayerKind::Npapi:
      return "SOFTWARE\\Tessaline\\VantrelPlayerPlugin";
    case PlayerKind::Ppapi:
      return "SOFTWARE\\Tessaline\\VantrelPlayerPepper";
  }
  return "";
}

bool IsWindows8OrLater(SMSystem& system) {
  return system.IsWindows8OrLater();
}

bool IsUserAdmin(SMSystem& system) {
  return system.IsUserAdmin();
}

PlayerProbe ProbePlayerKey(SMSystem& system, PlayerKind kind) {
  if (!system.OpenRegistryKey(kPlayerRoot, PlayerKey(kind))) return PlayerNotInstalled;
  // The type of isPartner is not checked: a string "1" reads as the number 0x31, and a value
  // of another size does not fit the 4-byte buffer. Neither is a partner build.
  std::optional<uint32_t> partner =
      QueryRegistryNumber(system, kPlayerRoot, PlayerKey(kind), "isPartner");
  return partner == 1u ? PlayerInstalledPartner : PlayerInstalled;
}

bool IsScriptDebugger(SMSystem& system, PlayerKind kind) {
  std::optional<uint32_t> debugger =
      QueryRegistryNumber(system, kPlayerRoot, PlayerKey(kind), "isScriptDebugger");
  return debugger.has_value() && *debugger != 0;
}

std::optional<std::string> ReadUninstallerPath(SMSystem& system, PlayerKind kind) {
  std::optional<std::string> path =
      ReadPlayerText(system, kind, "UninstallerPath", kUninstallerPathBytes);
  if (!path || path->empty()) return std::nullopt;
  return path;
}

std::optional<std::string> ReadPlayerVersion(SMSystem& system, PlayerKind kind) {
  return ReadPlayerText(system, kind, "Version", kVersionBytes);
}

bool WantsUpdatesPage(SMSystem& system) {
  bool windows8 = IsWindows8OrLater(system);
  PlayerProbe ppapi = ProbePlayerKey(system, PlayerKind::Ppapi);
  PlayerProbe npapi = ProbePlayerKey(system, PlayerKind::Npapi);
  PlayerProbe activeX = ProbePlayerKey(system, PlayerKind::ActiveX);
  if (ppapi == PlayerInstalled || npapi == PlayerInstalled) return true;
  return !windows8 && activeX == PlayerInstalled;
}
