// The storage settings-by-site list over 10,000 known sites, each with a site file and a data
// folder: the time from the button press to a filled, sorted list whose visible rows have their
// texts (on Windows: the real dialog, until it has painted and waits for input), against a
// plain loop that reads those 10,000 site files and lists their data folders, in the same run.
//
//   site_list_bench [SITES] [REPETITIONS]
//
// The profile stays in the temporary folder for the next run ("vp-site-list-bench-SITES").
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "dialogs/site_list_logic.h"
#include "l10n/string_table.h"
#include "platform/file_io.h"
#include "seeded_profile.h"
#include "settings/setting_keys.h"
#include "settings/settings_manager.h"

#ifdef _WIN32
#include <windows.h>

#include "dialogs/site_list_dialog.h"
#endif

using namespace bench;

namespace {

// About the number of rows the dialog's list shows at once.
constexpr size_t kVisibleRows = 20;

std::string MixedSiteName(size_t index) {
  // Mixed case and digits, so that the order is not the order of creation.
  static const char* const kWords[] = {"News", "game", "Video", "shop", "mail", "Maps"};
  return kWords[index % 6] + std::to_string((index * 7919) % 100000) + ".example" +
         (index % 3 == 0 ? ".com" : ".org");
}

struct Seeded {
  std::vector<std::string> siteFiles;
  std::vector<std::string> dataFolders;
};

// The profile's site files and data folders; written unless an earlier run left a complete
// profile of as many sites (seeding 100,000 sites under Wine takes an hour: seed them natively
// into the prefix's temporary folder, where the Windows build finds them).
Seeded Seed(SMPlatformServices& platform, size_t siteCount, const std::filesystem::path& root) {
  const std::string separator = platform.PathSeparator();
  const std::string settingsFolder = SMSettingsManager::SettingsFolderIn(platform);
  const std::filesystem::path sharedObjects =
      FromUtf8(platform.PlayerDataRoot()) / "#SharedObjects" / "BENCH01";
  Seeded seeded;
  for (size_t index = 0; index < siteCount; ++index) {
    const std::string site = MixedSiteName(index);
    seeded.siteFiles.push_back(settingsFolder + separator + SettingsFolderName(site) + separator +
                               kSettingsFileName);
    seeded.dataFolders.push_back(Utf8(sharedObjects / site));
  }
  if (std::filesystem::exists(root / "seeded")) return seeded;

  std::filesystem::remove_all(root);
  std::filesystem::create_directories(FromUtf8(settingsFolder));
  std::filesystem::create_directories(sharedObjects);
  SMSettingsManager settings(platform);
  SettingArray domains;
  for (size_t index = 0; index < siteCount; ++index) {
    const std::string site = MixedSiteName(index);
    if (!settings.EnsureSiteDefaults(site)) std::fprintf(stderr, "cannot write %s\n", site.c_str());
    domains.Append(SettingValue::Boolean(site, true));
    std::filesystem::create_directories(FromUtf8(seeded.dataFolders[index]));
    WriteBytes(FromUtf8(seeded.dataFolders[index]) / "game.sol", "stored by the site");
  }
  if (!settings.SetValue(SMSettingsManager::MasterDomain(),
                         SettingValue::Array(kKnownSites.name, std::move(domains)))) {
    std::fprintf(stderr, "cannot write the master file\n");
  }
  WriteBytes(root / "seeded", "");
  return seeded;
}

// What the list does before it can be drawn: read "domains", sort, and the visible rows' texts.
void FillVisibleRows(SMSystem& system, SMSettingsManager& settings, SMStringTable& strings) {
  SiteListModel model(SiteListKind::kStorage, settings, strings,
                      [&system](const std::string& site) { return system.DisplaySortKey(site); });
  model.Fill();
  size_t checksum = 0;
  for (size_t row = 0; row < std::min(kVisibleRows, model.RowCount()); ++row) {
    for (int column = 0; column < 3; ++column) checksum += model.CellText(row, column).size();
  }
  if (checksum == 0) std::fprintf(stderr, "no rows\n");
}

#ifdef _WIN32
// The dialog as the Storage page opens it; its owner ends it at the first idle moment of its
// modal loop, which comes only after every pending paint.
double OpenDialogUntilIdleMs(SMSystem& system, SMSettingsManager& settings,
                             SMStringTable& strings) {
  static Clock::time_point idleAt;
  static const wchar_t* kOwnerClass = L"SiteListBenchOwner";
  static bool registered = false;
  if (!registered) {
    WNDCLASSW owner{};
    owner.lpfnWndProc = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
      if (message == WM_ENTERIDLE && wParam == MSGF_DIALOGBOX) {
        idleAt = Clock::now();
        EndDialog(reinterpret_cast<HWND>(lParam), 0);
        return 0;
      }
      return DefWindowProcW(window, message, wParam, lParam);
    };
    owner.hInstance = GetModuleHandleW(nullptr);
    owner.lpszClassName = kOwnerClass;
    RegisterClassW(&owner);
    registered = true;
  }
  HWND owner = CreateWindowExW(0, kOwnerClass, L"", WS_OVERLAPPEDWINDOW, 0, 0, 200, 100, nullptr,
                               nullptr, GetModuleHandleW(nullptr), nullptr);
  StorageBySiteDialog dialog(system, strings, settings);
  Clock::time_point start = Clock::now();
  dialog.RunModal(DesignOf(SiteListKind::kStorage).templateId, owner);
  DestroyWindow(owner);
  return std::chrono::duration<double, std::milli>(idleAt - start).count();
}
#endif

}  // namespace

int main(int argc, char** argv) {
  const size_t siteCount = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 10000;
  const int repetitions = argc > 2 ? std::atoi(argv[2]) : 9;
  const std::filesystem::path root =
      std::filesystem::temp_directory_path() / ("vp-site-list-bench-" + std::to_string(siteCount));
  MovedFoldersSystem system(Utf8(root));
  NativePlatform platform(system);
  SMFixedLanguageStringTable strings(0);
  std::printf("profile of %zu sites: %s\n", siteCount, Utf8(root).c_str());
  const Seeded seeded = Seed(platform, siteCount, root);

  std::vector<double> baseline;
  std::vector<double> list;
  std::vector<double> dialog;
  for (int repetition = 0; repetition < repetitions; ++repetition) {
    baseline.push_back(MillisecondsOf([&] {
      size_t bytes = 0;
      for (size_t index = 0; index < seeded.siteFiles.size(); ++index) {
        bytes += ReadWholeFile(seeded.siteFiles[index]).value_or("").size();
        if (auto entries = platform.ListEntries(seeded.dataFolders[index])) {
          bytes += entries->size();
        }
      }
      if (bytes == 0) std::fprintf(stderr, "nothing read\n");
    }));
    // The page's settings manager exists before the button is pressed; no site file is read yet.
    SMSettingsManager settings(platform);
    list.push_back(MillisecondsOf([&] { FillVisibleRows(system, settings, strings); }));
#ifdef _WIN32
    SMSettingsManager dialogSettings(platform);
    dialog.push_back(OpenDialogUntilIdleMs(system, dialogSettings, strings));
#endif
  }
  const double baselineMs = Median(baseline);
  std::printf("sites %zu, repetitions %d (medians)\n", siteCount, repetitions);
  std::printf("plain loop: read every site file, list every data folder  %9.1f ms\n", baselineMs);
  std::printf("list filled, sorted, visible rows' texts                  %9.1f ms  ratio %.3f\n",
              Median(list), Median(list) / baselineMs);
  if (!dialog.empty()) {
    std::printf("dialog from button press to painted and idle              %9.1f ms  ratio %.3f\n",
                Median(dialog), Median(dialog) / baselineMs);
  }
  return 0;
}
