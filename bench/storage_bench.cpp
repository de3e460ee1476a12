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

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "pages/storage_logic.h"
#include "seeded_profile.h"
#include "settings/site_permissions.h"

using namespace bench;

namespace {

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
