// Time of the Storage page's choices over a profile with many sites, phase by phase, against a
// plain program doing the file work those choices cannot avoid, in the same run.
//
//   storage_bench [SITES [RUNS]]      (defaults: 10000 sites, 5 runs)
//
// Each run seeds a fresh profile in the temporary folder: a master file listing every site, one
// settings file per site and one data folder per site. The plain program deletes every data
// folder, then reads, deletes and rewrites every site file. Block is timed by its phases
// (confirmation, master write, deletion of all sites' data, the limit written to each site from
// the last listed to the first); Ask and Allow are timed whole, each on a freshly loaded store
// so that every site file is read again. Prints the median of every figure and the ratios.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/user_prompts.h"
#include "pages/storage_logic.h"
#include "platform/system.h"
#include "settings/setting_keys.h"
#include "settings/settings_manager.h"
#include "settings/settings_writer.h"
#include "settings/site_permissions.h"

#ifdef _WIN32
#include "platform/win32/win32_platform.h"
#else
#include "platform/posix/posix_platform.h"
#endif

namespace fs = std::filesystem;

namespace {

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

std::unique_ptr<SMPlatformServices> MakePlatform(SMSystem& system) {
  SMPlatformServices::ResetPathCachesForTesting();
#ifdef _WIN32
  return std::make_unique<Win32PlatformServices>(system);
#else
  return std::make_unique<PosixPlatformServices>(system);
#endif
}

std::string SiteName(int index) {
  std::string name = "www.site";
  name += std::to_string(index);
  name += ".example.com";
  return name;
}

// The folder of a site's settings file: "#" and the site's name.
std::string SettingsFolderName(const std::string& site) {
  std::string name = "#";
  name += site;
  return name;
}

void WriteBytes(const fs::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string ReadBytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

struct Profile {
  fs::path root;
  fs::path settingsFolder;
  fs::path storedData;
};

// A profile as the player leaves it after visiting `sites` sites.
Profile Seed(const fs::path& root, int sites) {
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

double SecondsOf(const std::function<void()>& work) {
  const Clock::time_point start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// What no program doing this job can skip.
void PlainDataDeletion(const Profile& profile, int sites) {
  for (int i = 0; i < sites; ++i) fs::remove_all(profile.storedData / SiteName(i));
}

void PlainSiteRewrite(const Profile& profile, int sites) {
  for (int i = sites; i-- > 0;) {
    const fs::path file = profile.settingsFolder / SettingsFolderName(SiteName(i)) / "settings.sol";
    std::string bytes = ReadBytes(file);
    bytes.back() ^= 1;  // a changed value
    fs::remove(file);
    WriteBytes(file, bytes);
  }
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

}  // namespace

int main(int argc, char** argv) {
  const int sites = argc > 1 ? std::atoi(argv[1]) : 10000;
  const int runs = argc > 2 ? std::atoi(argv[2]) : 5;
  const fs::path root = fs::temp_directory_path() / "vp-storage-bench";
  std::map<std::string, std::vector<double>> figures;
  bool allStored = true;
  for (int run = 0; run < runs; ++run) {
    Profile profile = Seed(root, sites);
    figures["plain: delete data folders"].push_back(
        SecondsOf([&] { PlainDataDeletion(profile, sites); }));
    figures["plain: rewrite site files"].push_back(
        SecondsOf([&] { PlainSiteRewrite(profile, sites); }));

    profile = Seed(root, sites);
    ProfileSystem system(root);
    std::unique_ptr<SMPlatformServices> platform = MakePlatform(system);
    ConfirmingPrompts prompts;
    {
      std::unique_ptr<SMSettingsManager> settings;
      figures["load store"].push_back(
          SecondsOf([&] { settings = std::make_unique<SMSettingsManager>(*platform); }));
      // Block, step by step as the Storage page takes it.
      figures["block: confirmation"].push_back(SecondsOf([&] {
        allStored =
            prompts.ConfirmBox(TextId::kStorageBlockAllText, TextId::kStorageBlockAllDeletesData,
                               TextId::kStorageBlockAllCaption) &&
            allStored;
      }));
      figures["block: master write"].push_back(SecondsOf([&] {
        allStored = settings->SetValue(SMSettingsManager::MasterDomain(),
                                       SettingValue::Number("defaultklimit", -1)) &&
                    allStored;
      }));
      figures["block: delete all sites' data"].push_back(
          SecondsOf([&] { allStored = settings->RemoveAllSites(false) && allStored; }));
      figures["block: limit of every site"].push_back(SecondsOf([&] {
        const std::vector<std::string> names = KnownSiteNames(*settings);
        for (auto site = names.rbegin(); site != names.rend(); ++site) {
          allStored = WriteSiteChoice(*settings, *site, SitePermission::kStorage, kChoiceBlock) &&
                      allStored;
        }
      }));
    }
    for (int choice : {kStorageAsk, kStorageAllow}) {
      SMSettingsManager settings(*platform);
      const char* name = choice == kStorageAsk ? "ask: whole choice" : "allow: whole choice";
      figures[name].push_back(SecondsOf([&] {
        allStored =
            ApplyStorageChoice(settings, prompts, kStorageBlock, choice) == choice && allStored;
      }));
    }
    // Each run as it ends: a long run under Wine shows its progress.
    std::fprintf(stderr, "run %d:", run + 1);
    for (const auto& [name, values] : figures) {
      std::fprintf(stderr, " %s %.3f;", name.c_str(), values.back());
    }
    std::fprintf(stderr, "\n");
  }
  fs::remove_all(root);
  if (!allStored) {
    std::fprintf(stderr, "storage_bench: a write failed\n");
    return 1;
  }

  std::printf("%d sites, median of %d runs (seconds)\n", sites, runs);
  std::map<std::string, double> median;
  for (const auto& [name, values] : figures) {
    median[name] = Median(values);
    std::printf("  %-32s %8.3f\n", name.c_str(), median[name]);
  }
  const double plainBlock =
      median["plain: delete data folders"] + median["plain: rewrite site files"];
  const double block = median["block: confirmation"] + median["block: master write"] +
                       median["block: delete all sites' data"] +
                       median["block: limit of every site"];
  std::printf("  block %.3f / plain %.3f = %.2fx\n", block, plainBlock, block / plainBlock);
  for (const char* name : {"ask: whole choice", "allow: whole choice"}) {
    std::printf("  %s %.3f / plain rewrite %.3f = %.2fx\n", name, median[name],
                median["plain: rewrite site files"],
                median[name] / median["plain: rewrite site files"]);
  }
  return 0;
}
