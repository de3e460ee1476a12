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
#include "bench_timing.h"
#include "platform/system.h"
#include "settings/setting_keys.h"
#include "settings/settings_manager.h"
#include "settings/settings_writer.h"

#ifdef _WIN32
#include "platform/win32/win32_platform.h"
#include "platform/win32/win32_system.h"
#else
#include "platform/posix/posix_platform.h"
#include "platform/posix/posix_system.h"
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

// The real system, with the user's folders moved into the benchmark's own folder.
#ifdef _WIN32
class MovedFoldersSystem : public Win32System {
 public:
  explicit MovedFoldersSystem(std::string root) : root_(std::move(root)) {}
  std::optional<std::string> ShellFolderPath(int csidl) override {
    return root_ + ((csidl & 0xff) == kLocalAppData ? "\\Local" : "\\Roaming");
  }

 private:
  std::string root_;
};
using NativePlatform = Win32PlatformServices;
#else
class MovedFoldersSystem : public PosixSystem {
 public:
  explicit MovedFoldersSystem(const std::string& root)
      : PosixSystem({root + "/Roaming", root + "/Local", root + "/sys"}) {}
};
using NativePlatform = PosixPlatformServices;
#endif

inline std::string Utf8(const fs::path& path) {
  std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

inline fs::path FromUtf8(const std::string& text) {
  return fs::path(std::u8string(text.begin(), text.end()));
}

// A site's settings as the player writes them on the site's first visit.
inline SettingsTable FirstVisitSiteTable() {
  SettingsTable table;
  for (const SettingKey* key : kSiteDefaults) table.Insert(DefaultValueOf(*key));
  return table;
}

// A master file's table listing `sites` known sites named by `siteName`.
inline SettingsTable MasterTableListing(int sites,
                                        const std::function<std::string(int)>& siteName) {
  SettingsTable master;
  for (const SettingKey* key : kGlobalDefaults) master.Insert(DefaultValueOf(*key));
  SettingArray domains;
  for (int i = 0; i < sites; ++i) domains.Append(SettingValue::Boolean(siteName(i), true));
  master.Insert(SettingValue::Array(kKnownSites.name, std::move(domains)));
  return master;
}

inline std::unique_ptr<SMPlatformServices> MakePlatform(SMSystem& system) {
  SMPlatformServices::ResetPathCachesForTesting();
  return std::make_unique<NativePlatform>(system);
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

// False when the file could not be written whole.
inline bool WriteBytes(const fs::path& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  return !file.fail();
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
  const SettingsTable table = FirstVisitSiteTable();
  const std::string game(2000, 'g');
  for (int i = 0; i < sites; ++i) {
    const std::string site = SiteName(i);
    fs::create_directory(profile.settingsFolder / SettingsFolderName(site));
    WriteBytes(profile.settingsFolder / SettingsFolderName(site) / kSettingsFileName,
               SerializeSettings(table, site + kSiteObjectSuffix));
    fs::create_directories(profile.storedData / site / "game");
    WriteBytes(profile.storedData / site / "game" / "progress.sol", game);
  }
  WriteBytes(profile.settingsFolder / kSettingsFileName,
             SerializeSettings(MasterTableListing(sites, SiteName), kMasterObjectName));
  return profile;
}

}  // namespace bench
