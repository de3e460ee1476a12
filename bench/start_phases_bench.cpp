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

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/file_io.h"
#include "seeded_profile.h"
#include "settings/settings_reader.h"

#ifdef _WIN32
#include <windows.h>

#include "platform/win32/utf16.h"
#else
#include <sys/stat.h>
#endif

using namespace bench;

namespace {

#ifdef _WIN32
uint64_t PlainFileSize(const std::string& path) {
  WIN32_FILE_ATTRIBUTE_DATA attributes;
  std::optional<std::wstring> widePath = ToUtf16(path);
  if (!widePath || !GetFileAttributesExW(widePath->c_str(), GetFileExInfoStandard, &attributes)) {
    return 0;
  }
  return (static_cast<uint64_t>(attributes.nFileSizeHigh) << 32) | attributes.nFileSizeLow;
}
#else
uint64_t PlainFileSize(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 ? static_cast<uint64_t>(status.st_size) : 0;
}
#endif

std::string SiteFile(SMPlatformServices& platform, const std::string& site) {
  const std::string& separator = platform.PathSeparator();
  return SMSettingsManager::SettingsFolderIn(platform) + separator + SettingsFolderName(site) +
         separator + kSettingsFileName;
}

// A profile as the player leaves it after visiting `siteCount` sites, unless an earlier run
// left a complete one in the same place.
bool SeedUnlessSeeded(SMPlatformServices& platform, const fs::path& root, int siteCount) {
  const fs::path complete = root / "seeded";
  if (fs::exists(complete)) return true;
  fs::remove_all(root);
  const fs::path settingsFolder = FromUtf8(SMSettingsManager::SettingsFolderIn(platform));
  fs::create_directories(settingsFolder);
  fs::create_directories(FromUtf8(platform.PlayerDataRoot()) / "#SharedObjects" / "QX7T2");
  const SettingsTable siteTable = FirstVisitSiteTable();
  for (int index = 0; index < siteCount; ++index) {
    const std::string site = SiteName(index);
    fs::create_directory(settingsFolder / FromUtf8(SettingsFolderName(site)));
    if (!WriteBytes(FromUtf8(SiteFile(platform, site)),
                    SerializeSettings(siteTable, site + kSiteObjectSuffix))) {
      return false;
    }
    if (index % 10000 == 9999) std::fprintf(stderr, "  %d sites seeded\n", index + 1);
  }
  return WriteBytes(
             settingsFolder / kSettingsFileName,
             SerializeSettings(MasterTableListing(siteCount, SiteName), kMasterObjectName)) &&
         WriteBytes(complete, "");
}

// One run of every figure over one profile; false when the store lost a site it should keep.
bool TimeOneRun(SMPlatformServices& platform, int siteCount,
                std::map<std::string, std::vector<double>>& figures) {
  const std::string masterFile =
      SMSettingsManager::SettingsFolderIn(platform) + platform.PathSeparator() + kSettingsFileName;
  figures["plain loop"].push_back(MillisecondsOf([&] {
    std::string bytes = ReadWholeFile(masterFile).value_or("");
    WriteBytes(FromUtf8(masterFile), bytes);
    uint64_t total = 0;
    for (int index = 0; index < siteCount; ++index) {
      total += PlainFileSize(SiteFile(platform, SiteName(index)));
    }
    if (total == 0) std::fprintf(stderr, "no site file found\n");
  }));

  std::unique_ptr<SMSettingsManager> settings;
  figures["load, whole"].push_back(
      MillisecondsOf([&] { settings = std::make_unique<SMSettingsManager>(platform); }));
  std::string bytes;
  figures["load: read master file"].push_back(
      MillisecondsOf([&] { bytes = ReadWholeFile(masterFile).value_or(""); }));
  figures["load: parse"].push_back(MillisecondsOf([&] {
    std::string objectName;
    if (!SMSettingsReader(bytes).Parse(&objectName)) std::fprintf(stderr, "unreadable\n");
  }));
  // Every key is present, so this is the one master write of the load.
  figures["load: defaults and write"].push_back(
      MillisecondsOf([&] { (void)settings->EnsureGlobalDefaults(); }));
  // Every site file is there, so this walks the whole list as the load did.
  figures["load: prune known sites"].push_back(
      MillisecondsOf([&] { settings->PruneKnownSites(); }));
  const SettingArray* known = settings->GetKnownSites();
  return known != nullptr && known->size() == static_cast<size_t>(siteCount);
}

}  // namespace

int main(int argc, char** argv) {
  const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
  std::vector<int> siteCounts;
  for (int arg = 2; arg < argc; ++arg) siteCounts.push_back(std::atoi(argv[arg]));
  if (siteCounts.empty()) siteCounts = {3, 10000, 100000};

  const fs::path base = fs::temp_directory_path() / "vp-start-bench";
  std::map<int, std::map<std::string, std::vector<double>>> figures;
  std::vector<std::unique_ptr<MovedFoldersSystem>> systems;
  for (int siteCount : siteCounts) {
    const fs::path root = base / std::to_string(siteCount);
    // The platform caches its paths process-wide: each profile computes its own again.
    SMPlatformServices::ResetPathCachesForTesting();
    systems.push_back(std::make_unique<MovedFoldersSystem>(Utf8(root)));
    NativePlatform platform(*systems.back());
    std::fprintf(stderr, "profile of %d sites: %s\n", siteCount, platform.PlayerDataRoot().c_str());
    if (!SeedUnlessSeeded(platform, root, siteCount)) {
      std::fprintf(stderr, "start_phases_bench: cannot seed %s\n", Utf8(root).c_str());
      return 1;
    }
  }
  // The profiles take turns within every run, so that each run's figures share its load.
  for (int run = 0; run < runs; ++run) {
    for (size_t profile = 0; profile < siteCounts.size(); ++profile) {
      SMPlatformServices::ResetPathCachesForTesting();
      NativePlatform platform(*systems[profile]);
      if (!TimeOneRun(platform, siteCounts[profile], figures[siteCounts[profile]])) {
        std::fprintf(stderr, "start_phases_bench: the store lost known sites\n");
        return 1;
      }
    }
    std::fprintf(stderr, "run %d of %d done\n", run + 1, runs);
  }

  std::printf("median of %d runs (ms); ratio against the plain loop of the same profile\n", runs);
  const double fewest = Median(figures[siteCounts.front()]["load, whole"]);
  for (int siteCount : siteCounts) {
    std::map<std::string, std::vector<double>>& ofProfile = figures[siteCount];
    const double plain = Median(ofProfile["plain loop"]);
    const double whole = Median(ofProfile["load, whole"]);
    double steps = 0;
    std::printf("%d sites\n", siteCount);
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
