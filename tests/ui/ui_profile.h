#pragma once

#include <memory>
#include <string>

#include "platform/installed_players.h"
#include "platform/win32/win32_platform.h"
#include "platform/win32/win32_system.h"
#include "settings/settings_manager.h"

// The player's state in the test prefix that the program reads: the players' registry keys and
// the user's settings files. Starts empty and leaves nothing behind.
class UiProfile {
 public:
  UiProfile();
  ~UiProfile();

  // A player key with its Version, as the player's 32-bit installer writes it.
  void AddPlayer(PlayerKind kind, const std::wstring& version, bool partner = false);
  // Rewrites a global value of the master settings file, as another program would.
  bool SetGlobal(const SettingValue& value);
  // The administrator file "tss.cfg" with these lines.
  bool WriteAdminConfig(const std::string& contents);
  // No player, no settings and no administrator file.
  void Clear();

 private:
  Win32System system_;
  std::unique_ptr<Win32PlatformServices> platform_;
};
