#pragma once

#include <optional>
#include <string>

#include "platform/system.h"

// The three kinds of player the vendor ships; each keeps a registry key under
// HKEY_LOCAL_MACHINE in the 32-bit view, written by its installer.
enum class PlayerKind { ActiveX, Npapi, Ppapi };

// "SOFTWARE\\Tessaline\\VantrelPlayer..." for the kind.
const char* PlayerKey(PlayerKind kind);

// What a probe of a player key found. The numbers are the program's own codes and are compared
// literally by the callers.
enum PlayerProbe : int {
  PlayerNotInstalled = 0,       // the key cannot be opened
  PlayerInstalled = 16,         // the key is there; isPartner is missing or not 1
  PlayerInstalledPartner = 17,  // the key is there and isPartner is 1
};

bool IsWindows8OrLater(SMSystem& system);
bool IsUserAdmin(SMSystem& system);

PlayerProbe ProbePlayerKey(SMSystem& system, PlayerKind kind);

// True when the kind's key holds a non-zero 32-bit isScriptDebugger.
bool IsScriptDebugger(SMSystem& system, PlayerKind kind);

// The kind's UninstallerPath, or nothing when the key or value cannot be read or the text is
// empty. The player's installers keep it short: a value longer than 260 bytes is not read.
std::optional<std::string> ReadUninstallerPath(SMSystem& system, PlayerKind kind);

// The kind's Version text for the Updates page, or nothing when the key or value cannot be
// read (an empty value reads as an empty text). The text buffer holds 260 characters, and the
// whole of it, 520 bytes, is offered to the query: a version string of up to 259 characters
// with its terminating zero fits, and the text is cut at its first zero in any case.
std::optional<std::string> ReadPlayerVersion(SMSystem& system, PlayerKind kind);

// Whether the sheet gets an Updates page: a non-partner PPAPI or NPAPI player on Windows 8 or
// later, where the ActiveX player is part of the system and updated with it; before Windows 8
// any non-partner player. Partner builds are updated by their partner and never count.
bool WantsUpdatesPage(SMSystem& system);
