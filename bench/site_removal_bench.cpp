// The clear data dialog's deletion and the settings-by-site list's Remove over a profile with
// many sites, each against a plain loop doing the same file operations in the same run.
//
//   site_removal_bench [SITES [RUNS [REMOVED [remove|clear]]]]
//                                 (defaults: 10000 sites, 3 runs, 10 removed, both)
//
// Remove: the storage list, filled, removes REMOVED selected sites with their data and settings;
// the master file is written after each site. The plain loop deletes as many other sites' data
// folders and settings folders and writes the master file's bytes after each.
// Clear data: the dialog's deletion of all site data and settings (no licence files) by a store
// loaded just before; the plain loop, on a profile seeded again, deletes the settings folder,
// makes it again, writes the master file and deletes every data folder.

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "dialogs/clear_data_logic.h"
#include "dialogs/site_list_logic.h"
#include "l10n/string_table.h"
#include "platform/private_data_folder.h"
#include "seeded_profile.h"

using namespace bench;

namespace {

void PlainRemove(const Profile& profile, int firstSite, int removed) {
  const fs::path masterFile = profile.settingsFolder / "settings.sol";
  const std::string masterBytes = ReadBytes(masterFile);
  for (int i = firstSite; i < firstSite + removed; ++i) {
    fs::remove_all(profile.storedData / SiteName(i));
    fs::remove_all(profile.settingsFolder / SettingsFolderName(SiteName(i)));
    fs::remove(masterFile);
    WriteBytes(masterFile, masterBytes);
  }
}

void PlainClear(const Profile& profile) {
  const fs::path masterFile = profile.settingsFolder / "settings.sol";
  const std::string masterBytes = ReadBytes(masterFile);
  fs::remove_all(profile.settingsFolder);
  fs::create_directory(profile.settingsFolder);
  WriteBytes(masterFile, masterBytes);
  for (const fs::directory_entry& entry :
       fs::directory_iterator(profile.storedData.parent_path())) {
    fs::remove_all(entry.path());
  }
}

// The rows of the sites the user selected, in the list's order.
std::vector<size_t> RowsOf(const SiteListModel& list, int firstSite, int count) {
  std::vector<size_t> rows;
  for (size_t row = 0; row < list.RowCount(); ++row) {
    for (int i = firstSite; i < firstSite + count; ++i) {
      if (list.SiteAt(row) == SiteName(i)) rows.push_back(row);
    }
  }
  return rows;
}

}  // namespace

int main(int argc, char** argv) {
  const int sites = argc > 1 ? std::atoi(argv[1]) : 10000;
  const int runs = argc > 2 ? std::atoi(argv[2]) : 3;
  const int removed = argc > 3 ? std::atoi(argv[3]) : 10;
  const std::string only = argc > 4 ? argv[4] : "";
  const fs::path root = fs::temp_directory_path() / "vp-site-removal-bench";
  std::map<std::string, std::vector<double>> figures;
  bool allDone = true;
  for (int run = 0; run < runs; ++run) {
    Profile profile = Seed(root, sites);
    ProfileSystem system(root);
    std::unique_ptr<SMPlatformServices> platform = MakePlatform(system);
    if (only != "clear") {
      figures["plain: remove sites"].push_back(
          SecondsOf([&] { PlainRemove(profile, 0, removed); }));
      SMSettingsManager settings(*platform);
      SMFixedLanguageStringTable strings(0);
      SiteListModel list(SiteListKind::kStorage, settings, strings,
                         [](const std::string& site) { return site; });
      list.Fill();
      const std::vector<size_t> rows = RowsOf(list, removed, removed);
      figures["list: remove sites"].push_back(
          SecondsOf([&] { allDone = list.RemoveRows(rows).empty() && allDone; }));
    }
    if (only != "remove") {
      {
        SMSettingsManager settings(*platform);
        SMPrivateDataFolder privateData(platform->PrivateDataFolder(), platform.get());
        ConfirmingPrompts prompts;
        figures["clear data: site data and settings"].push_back(SecondsOf([&] {
          ClearDataOutcome outcome = ClearAllData(settings, *platform, privateData, prompts,
                                                  ClearDataRequest{true, false});
          allDone = !outcome.siteDataFailed && allDone;
        }));
      }
      profile = Seed(root, sites);
      figures["plain: clear"].push_back(SecondsOf([&] { PlainClear(profile); }));
    }
    std::fprintf(stderr, "run %d:", run + 1);
    for (const auto& [name, values] : figures) {
      std::fprintf(stderr, " %s %.3f;", name.c_str(), values.back());
    }
    std::fprintf(stderr, "\n");
  }
  fs::remove_all(root);
  if (!allDone) {
    std::fprintf(stderr, "site_removal_bench: a removal failed\n");
    return 1;
  }
  std::printf("%d sites, %d removed, median of %d runs (seconds)\n", sites, removed, runs);
  std::map<std::string, double> median;
  for (const auto& [name, values] : figures) {
    median[name] = Median(values);
    std::printf("  %-36s %8.3f\n", name.c_str(), median[name]);
  }
  if (only != "clear") {
    std::printf("  remove against the plain loop %.2fx\n",
                median["list: remove sites"] / median["plain: remove sites"]);
  }
  if (only != "remove") {
    std::printf("  clear data against the plain loop %.2fx\n",
                median["clear data: site data and settings"] / median["plain: clear"]);
  }
  return 0;
}
