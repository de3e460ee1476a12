#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

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
  void AddPlayer(PlayerKind kind, const std::wstring& version);
  // Rewrites a global value of the master settings file, as another program would.
  bool SetGlobal(const SettingValue& value);
  // The administrator file "tss.cfg" with these entries, written as the program writes it.
  bool WriteAdminConfig(const std::vector<std::pair<std::string, std::string>>& entries);
  // Lists sites in the master settings, each with its settings file.
  bool AddSites(const std::vector<std::string>& sites);
  // A value of a settings file as it is on disk now (domain: a site or the master domain),
  // read with the player's reader; nullopt when the file or the value is missing.
  std::optional<SettingValue> Stored(const std::string& domain, const std::string& name);
  template <typename T>
  std::optional<T> StoredAs(const std::string& domain, const std::string& name) {
    std::optional<SettingValue> value = Stored(domain, name);
    return ValueAs<T>(value ? &*value : nullptr);
  }
  // The names of an array value's elements; nullopt when it is no array.
  std::optional<std::vector<std::string>> StoredNames(const std::string& domain,
                                                      const std::string& name);
  // The settings file of a site or of the master domain.
  std::string SettingsFile(const std::string& domain);
  // A file of data a site stored, below the player's shared objects.
  std::string StoredDataFile(const std::string& site);
  // The prefix's data locations, as the program computes them.
  Win32PlatformServices& platform() { return *platform_; }

 private:
  // No player, no settings and no administrator file.
  void Clear();

  Win32System system_;
  std::unique_ptr<Win32PlatformServices> platform_;
};
