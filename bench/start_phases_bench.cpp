// Where the program's start spends its time with many recorded sites: the load of the settings
// store phase by phase, against a plain loop doing the file work no start can skip, in the same
// run, for several numbers of sites.
//
//   start_phases_bench [RUNS [SITES...]]      (defaults: 5 runs; 3, 10000 and 100000 sites)
//
// Each number of sites gets a profile in the temporary folder, "vp-start-bench\SITES", as the
// player leaves it: a master file listing every site and one settings file per site. A profile
// already seeded by an earlier run is used again (seeding 100,000 sites under Wine takes
// minutes); its data root, "...\Roaming\Tessaline\Vantrel Player", is what start_bench moves
// into place to launch the real program on it.
//
// The load is timed whole (the store's construction), then each of its steps on its own over the
// same profile: reading the master file, parsing it, filling in the defaults with the write that
// follows, and pruning the known sites by the size of their settings files. What the whole load
// takes beyond those steps is printed as the rest. The plain loop reads the master file, writes
// it back once and asks for the size of every site file with the cheapest call there is.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/file_io.h"
#include "settings/setting_keys.h"
#include "settings/settings_manager.h"
#include "settings/settings_reader.h"
#include "settings/settings_writer.h"

#ifdef _WIN32
#include <windows.h>

#include "platform/win32/utf16.h"
#include "platform/win32/win32_platform.h"
#include "platform/win32/win32_system.h"
#else
#include <sys/stat.h>

#include "platform/posix/posix_platform.h"
#include "platform/posix/posix_system.h"
#endif

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

std::string Utf8(const fs::path& path) {
  std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

fs::path FromUtf8(const std::string& text) {
  return fs::path(std::u8string(text.begin(), text.end()));
}

#ifdef _WIN32
// The real system, with the user's folders moved into the benchmark's own folder.
class BenchSystem : public Win32System {
 public:
  explicit BenchSystem(std::string root) : root_(std::move(root)) {}
  std::optional<std::string> ShellFolderPath(int csidl) override {
    return root_ + ((csidl & 0xff) == kLocalAppData ? "\\Local" : "\\Roaming");
  }

 private:
  std::string root_;
};
using BenchPlatform = Win32PlatformServices;

uint64_t PlainFileSize(const std::string& path) {
  WIN32_FILE_ATTRIBUTE_DATA attributes;
  std::optional<std::wstring> widePath = ToUtf16(path);
  if (!widePath || !GetFileAttributesExW(widePath->c_str(), GetFileExInfoStandard, &attributes)) {
    return 0;
  }
  return (static_cast<uint64_t>(attributes.nFileSizeHigh) << 32) | attributes.nFileSizeLow;
}
#else
class BenchSystem : public PosixSystem {
 public:
  explicit BenchSystem(const std::string& root)
      : PosixSystem({root + "/Roaming", root + "/Local", root + "/sys"}) {}
};
using BenchPlatform = PosixPlatformServices;

uint64_t PlainFileSize(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 ? static_cast<uint64_t>(status.st_size) : 0;
}
#endif

std::string SiteName(size_t index) {
  return "www.site" + std::to_string(index) + ".example.com";
}

std::string SiteFile(SMPlatformServices& platform, const std::string& site) {
  const std::string& separator = platform.PathSeparator();
  return SMSettingsManager::SettingsFolderIn(platform) + separator + "#" + site + separator +
         "settings.sol";
}

bool WriteBytes(const std::string& path, const std::string& bytes) {
  std::FILE* file = OpenFileUtf8(path, "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && written;
}

// A profile as the player leaves it after visiting `siteCount` sites, unless an earlier run
// left a complete one in the same place.
bool SeedUnlessSeeded(SMPlatformServices& platform, const fs::path& root, size_t siteCount) {
  const fs::path complete = root / "seeded";
  if (fs::exists(complete)) return true;
  fs::remove_all(root);
  const fs::path settingsFolder = FromUtf8(SMSettingsManager::SettingsFolderIn(platform));
  fs::create_directories(settingsFolder);
  fs::create_directories(FromUtf8(platform.PlayerDataRoot()) / "#SharedObjects" / "QX7T2");
  SettingsTable siteTable;
  for (const char* name : {"allow", "always", "allowsecure", "alwayssecure"}) {
    siteTable.Insert(SettingValue::Boolean(name, false));
  }
  siteTable.Insert(SettingValue::Number("klimit", 100));
  siteTable.Insert(SettingValue::Boolean("p2pallow", false));
  siteTable.Insert(SettingValue::Boolean("p2palways", false));
  SettingsTable master;
  for (const SettingKey* key : kGlobalDefaults) master.Insert(DefaultValueOf(*key));
  SettingArray domains;
  for (size_t index = 0; index < siteCount; ++index) {
    const std::string site = SiteName(index);
    domains.Append(SettingValue::Boolean(site, true));
    fs::create_directory(settingsFolder / FromUtf8("#" + site));
    if (!WriteBytes(SiteFile(platform, site), SerializeSettings(siteTable, site + "/settings"))) {
      return false;
    }
    if (index % 10000 == 9999) std::fprintf(stderr, "  %zu sites seeded\n", index + 1);
  }
  master.Insert(SettingValue::Array("domains", std::move(domains)));
  const std::string masterFile = Utf8(settingsFolder / "settings.sol");
  return WriteBytes(masterFile, SerializeSettings(master, "settings")) &&
         WriteBytes(Utf8(complete), "");
}

double Ms(const std::function<void()>& work) {
  const Clock::time_point start = Clock::now();
  work();
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

// One run of every figure over one profile; false when the store lost a site it should keep.
bool TimeOneRun(SMPlatformServices& platform, size_t siteCount,
                std::map<std::string, std::vector<double>>& figures) {
  const std::string masterFile =
      SMSettingsManager::SettingsFolderIn(platform) + platform.PathSeparator() + "settings.sol";
  figures["plain loop"].push_back(Ms([&] {
    std::string bytes = ReadWholeFile(masterFile).value_or("");
    WriteBytes(masterFile, bytes);
    uint64_t total = 0;
    for (size_t index = 0; index < siteCount; ++index) {
      total += PlainFileSize(SiteFile(platform, SiteName(index)));
    }
    if (total == 0) std::fprintf(stderr, "no site file found\n");
  }));

  std::unique_ptr<SMSettingsManager> settings;
  figures["load, whole"].push_back(
      Ms([&] { settings = std::make_unique<SMSettingsManager>(platform); }));
  std::string bytes;
  figures["load: read master file"].push_back(
      Ms([&] { bytes = ReadWholeFile(masterFile).value_or(""); }));
  figures["load: parse"].push_back(Ms([&] {
    std::string objectName;
    if (!SMSettingsReader(bytes).Parse(&objectName)) std::fprintf(stderr, "unreadable\n");
  }));
  // Every key is present, so this is the one master write of the load.
  figures["load: defaults and write"].push_back(
      Ms([&] { (void)settings->EnsureGlobalDefaults(); }));
  // Every site file is there, so this walks the whole list as the load did.
  figures["load: prune known sites"].push_back(Ms([&] { settings->PruneKnownSites(); }));
  const SettingArray* known = settings->GetKnownSites();
  return known != nullptr && known->size() == siteCount;
}

}  // namespace

int main(int argc, char** argv) {
  const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
  std::vector<size_t> siteCounts;
  for (int arg = 2; arg < argc; ++arg) siteCounts.push_back(std::strtoul(argv[arg], nullptr, 10));
  if (siteCounts.empty()) siteCounts = {3, 10000, 100000};

  const fs::path base = fs::temp_directory_path() / "vp-start-bench";
  std::map<size_t, std::map<std::string, std::vector<double>>> figures;
  std::vector<std::unique_ptr<BenchSystem>> systems;
  for (size_t siteCount : siteCounts) {
    const fs::path root = base / std::to_string(siteCount);
    // The platform caches its paths process-wide: each profile computes its own again.
    SMPlatformServices::ResetPathCachesForTesting();
    systems.push_back(std::make_unique<BenchSystem>(Utf8(root)));
    BenchPlatform platform(*systems.back());
    std::fprintf(stderr, "profile of %zu sites: %s\n", siteCount,
                 platform.PlayerDataRoot().c_str());
    if (!SeedUnlessSeeded(platform, root, siteCount)) {
      std::fprintf(stderr, "start_phases_bench: cannot seed %s\n", Utf8(root).c_str());
      return 1;
    }
  }
  // The profiles take turns within every run, so that each run's figures share its load.
  for (int run = 0; run < runs; ++run) {
    for (size_t profile = 0; profile < siteCounts.size(); ++profile) {
      SMPlatformServices::ResetPathCachesForTesting();
      BenchPlatform platform(*systems[profile]);
      if (!TimeOneRun(platform, siteCounts[profile], figures[siteCounts[profile]])) {
        std::fprintf(stderr, "start_phases_bench: the store lost known sites\n");
        return 1;
      }
    }
    std::fprintf(stderr, "run %d of %d done\n", run + 1, runs);
  }

  std::printf("median of %d runs (ms); ratio against the plain loop of the same profile\n", runs);
  const double fewest = Median(figures[siteCounts.front()]["load, whole"]);
  for (size_t siteCount : siteCounts) {
    std::map<std::string, std::vector<double>>& ofProfile = figures[siteCount];
    const double plain = Median(ofProfile["plain loop"]);
    const double whole = Median(ofProfile["load, whole"]);
    double steps = 0;
    std::printf("%zu sites\n", siteCount);
    for (const auto& [name, values] : ofProfile) {
      const double median = Median(values);
      if (name.starts_with("load: ")) steps += median;
      std::printf("  %-28s %10.1f  %6.2fx\n", name.c_str(), median, median / plain);
    }
    std::printf("  %-28s %10.1f\n", "load: the rest", whole - steps);
    std::printf("  %-28s %10.1f\n", "load, more than the first", whole - fewest);
  }
  return 0;
}
