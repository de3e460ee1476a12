#pragma once

// A profile as the player leaves it after visiting many sites, for the benchmarks that run the
// store's operations over it: a master file listing every site, one settings file per site and
// one data folder per site holding a stored object.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "app/user_prompts.h"
#include "platform/system.h"
#include "settings/setting_keys.h"
#include "settings/settings_manager.h"
#include "settings/settings_writer.h"

#ifdef _WIN32
#include "platform/win32/win32_platform.h"
#else
#include "platform/posix/posix_platform.h"
#endif

namespace fs = std::filesystem;

namespace bench {

// The folders of the seeded profile; nothing else of the operating system is asked for.
class ProfileSystem : public SMSystem {
 public:
  explicit ProfileSystem(const fs::path& root)
      : roaming_((root / "Roaming").string()), system_((root / "sys").string()) {}
  bool OpenRegistryKey(RegistryRoot, const std::string&) override { return false; }
  std::optional<std::vector<uint8_t>> QueryRegistryValue(const RegistryQuery&) override {
    return std::nullopt;
  }
  bool IsWindows8OrLater() override { return true; }
  bool IsUserAdmin() override { return false; }
  uint16_t UserDefaultUILanguage() override { return 0x0409; }
  std::string CommandLine() override { return "storage_bench"; }
  std::string ModulePath() override { return "storage_bench"; }
  std::optional<uint32_t> RunAndWait(const std::string&, uint32_t) override { return std::nullopt; }
  bool LaunchElevated(const std::string&, const std::string&) override { return false; }
  [[noreturn]] void ExitProcess(int status) override { std::exit(status); }
  void OpenUrl(void*, const char*) override {}
  std::optional<std::string> ShellFolderPath(int) override { return roaming_; }
  std::string SystemWow64Directory() override { return system_; }
  std::string SystemDirectory() override { return system_; }

 private:
  std::string roaming_;
  std::string system_;
};

class ConfirmingPrompts : public SMUserPrompts {
 public:
  bool ConfirmBox(TextId, TextId, TextId) override { return true; }
  void ErrorBox(TextId, TextId) override {}
};

inline std::unique_ptr<SMPlatformServices> MakePlatform(SMSystem& system) {
  SMPlatformServices::ResetPathCachesForTesting();
#ifdef _WIN32
  return std::make_unique<Win32PlatformServices>(system);
#else
  return std::make_unique<PosixPlatformServices>(system);
#endif
}

inline std::string SiteName(int index) {
  std::string name = "www.site";
  name += std::to_string(index);
  name += ".example.com";
  return name;
}

// The folder of a site's settings file: "#" and the site's name.
inline std::string SettingsFolderName(const std::string& site) {
  std::string name = "#";
  name += site;
  return name;
}

inline void WriteBytes(const fs::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

inline std::string ReadBytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

struct Profile {
  fs::path root;
  fs::path settingsFolder;
  fs::path storedData;
};

// A profile as the player leaves it after visiting `sites` sites.
inline Profile Seed(const fs::path& root, int sites) {
  fs::remove_all(root);
  Profile profile{root, root / "Roaming" / "Tessaline" / "Vantrel Player"};
  profile.storedData = profile.settingsFolder / "#SharedObjects" / "QX7T2";
  profile.settingsFolder /= fs::path("tessaline.com") / "support" / "vantrelplayer" / "sys";
  fs::create_directories(profile.settingsFolder);
  fs::create_directories(profile.storedData);
  fs::create_directories(root / "sys");
  SettingsTable master;
  for (const SettingKey* key : kGlobalDefaults) master.Insert(DefaultValueOf(*key));
  SettingArray domains;
  const std::string game(2000, 'g');
  for (int i = 0; i < sites; ++i) {
    const std::string site = SiteName(i);
    domains.Append(SettingValue::Boolean(site, true));
    SettingsTable table;
    for (const char* name : {"allow", "always", "allowsecure", "alwayssecure"}) {
      table.Insert(SettingValue::Boolean(name, false));
    }
    table.Insert(SettingValue::Number("klimit", 100));
    table.Insert(SettingValue::Boolean("p2pallow", false));
    table.Insert(SettingValue::Boolean("p2palways", false));
    fs::create_directory(profile.settingsFolder / SettingsFolderName(site));
    WriteBytes(profile.settingsFolder / SettingsFolderName(site) / "settings.sol",
               SerializeSettings(table, site + std::string("/settings")));
    fs::create_directories(profile.storedData / site / "game");
    WriteBytes(profile.storedData / site / "game" / "progress.sol", game);
  }
  master.Insert(SettingValue::Array("domains", std::move(domains)));
  WriteBytes(profile.settingsFolder / "settings.sol", SerializeSettings(master, "settings"));
  return profile;
}

using Clock = std::chrono::steady_clock;

inline double SecondsOf(const std::function<void()>& work) {
  const Clock::time_point start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

}  // namespace bench
