// Hostile layouts of the player's folders against every way of deleting or writing there, from
// the pages and dialogs and from vpsettings: whatever the layout, nothing outside the player's
// own folders loses a byte. (Deauthorize and Clear data without the licences take the same
// deletions as Clear data with them.)
//
// Under Wine (the Windows build's run of this test) the links are the host's symbolic links,
// made with its ln: a Windows program cannot make one there (CreateSymbolicLinkW makes nothing,
// setting a junction fails with ERROR_NOT_SUPPORTED). Wine lists a link to a folder as a reparse
// point, so the links on the way are refused as on Windows; but every handle to such a link
// opens its target, so it cannot be removed as itself and each deletion that meets one fails
// instead (the link and its target stay). A link to a file shows there as a plain file, and
// deleting it removes the link. Rows whose links sit at or inside the deleted paths therefore
// fail under Wine where they succeed natively; the canaries hold in both.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>

#include "dialogs/clear_data_logic.h"
#include "dialogs/site_list_logic.h"
#include "l10n/string_table.h"
#include "pages/storage_logic.h"
#include "platform/private_data_folder.h"
#include "settings/settings_manager.h"
#include "support/process_runner.h"
#include "support/scripted_prompts.h"
#include "support/test_profile.h"

namespace fs = std::filesystem;

namespace {

const std::string kSite = "victim.example";

bool UnderWine() {
#ifdef _WIN32
  return GetProcAddress(GetModuleHandleW(L"ntdll"), "wine_get_version") != nullptr;
#else
  return false;
#endif
}

void MakeLink(const fs::path& target, const fs::path& link) {
#ifdef _WIN32
  using UnixName = char*(WINAPI*)(const wchar_t*);
  auto unixName = reinterpret_cast<UnixName>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"kernel32"), "wine_get_unix_file_name")));
  if (unixName == nullptr) {
    const DWORD flags = (fs::is_directory(target) ? SYMBOLIC_LINK_FLAG_DIRECTORY : 0) |
                        0x2;  // SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE
    ASSERT_TRUE(CreateSymbolicLinkW(link.c_str(), target.c_str(), flags));
    return;
  }
  // ln is handed no path holding '#', which does not reach it whole: the link is made under a
  // plain name in its folder, then renamed.
  char* unixTarget = unixName(target.c_str());
  ASSERT_NE(unixTarget, nullptr);
  std::string arguments = std::string("ln -s \"") + unixTarget + "\" made-link";
  HeapFree(GetProcessHeap(), 0, unixTarget);
  std::wstring commandLine(arguments.begin(), arguments.end());
  STARTUPINFOW startup{sizeof startup};
  PROCESS_INFORMATION process{};
  ASSERT_TRUE(CreateProcessW(L"Z:\\bin\\ln", commandLine.data(), nullptr, nullptr, FALSE, 0,
                             nullptr, link.parent_path().c_str(), &startup, &process));
  WaitForSingleObject(process.hProcess, INFINITE);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  ASSERT_TRUE(MoveFileW((link.parent_path() / "made-link").c_str(), link.c_str())) << link;
#else
  fs::create_symlink(target, link);
#endif
}

// A profile where the player has kept data for one site, its caches and licence files.
struct Profile {
  TempFolder temp;
  FakeSystem system;
  std::unique_ptr<SMPlatformServices> platform;
  fs::path canary = temp.path() / "canary";
  fs::path lastLink;

  explicit Profile(const std::string& roaming) {
    UseFoldersIn(system, temp);
    if (!roaming.empty()) system.roamingAppData = roaming;
    platform = MakeNativePlatform(system);
    for (const char* file : {"c.sol", "X1/victim.example/c.sol", "victim.example/c.sol"}) {
      WriteFileBytes(canary / file, std::string("precious ") + file);
    }
    if (platform->PlayerDataRoot().empty()) return;
    fs::create_directories(Path(SMSettingsManager::SettingsFolderIn(*platform)));
    EXPECT_TRUE(SMSettingsManager(*platform).AddSite(kSite));
    WriteFileBytes(SiteData() / "d.sol", "site data");
    for (const std::string* folder : {&platform->AssetCacheFolder(), &platform->VXCacheFolder(),
                                      &platform->PrivateDataFolder()}) {
      if (!IsCutDataPath(*folder)) WriteFileBytes(Path(*folder) / "f.bin", "cache");
    }
  }
  static fs::path Path(const std::string& utf8) { return PathFromUtf8(utf8); }
  fs::path SharedObjects() const { return Path(platform->PlayerDataRoot()) / "#SharedObjects"; }
  fs::path SiteData() const { return SharedObjects() / "X1" / kSite; }
  // Replaces a folder of the profile with a link to the canary.
  void LinkToCanary(const fs::path& folder) {
    fs::remove_all(folder);
    MakeLink(canary, folder);
    lastLink = folder;
  }
};

// What an operation deletes: one site's stored data, every site's, the caches, the licences.
enum Area : unsigned { kOneSite = 1, kAllSites = 2, kCaches = 4, kLicences = 8, kEverywhere = 15 };

struct Operation {
  const char* name;
  unsigned touches;  // Areas
  bool tool;
  // Runs the operation; whether it reported a failure, when it reports any. The tool's
  // standard error goes to *message.
  std::function<std::optional<bool>(Profile&, std::string* message)> run;
};

std::optional<bool> RunTool(Profile& profile, std::vector<std::string> arguments,
                            std::string* message) {
  std::vector<std::string> all = {"--appdata",       profile.system.roamingAppData,
                                  "--local-appdata", profile.system.localAppData,
                                  "--system-dir",    profile.system.systemWow64};
  all.insert(all.end(), arguments.begin(), arguments.end());
  ProcessResult result = RunProcess(BesideTestProgram(VPSETTINGS_RELATIVE_PATH), all);
  *message = result.err;
  return result.exitCode != 0;
}

// The storage-by-site list over the profile's sites, filled as the dialog fills it.
template <typename Use>
std::optional<bool> WithStorageList(Profile& profile, Use use) {
  SMSettingsManager settings(*profile.platform);
  SMFixedLanguageStringTable strings(0);
  SiteListModel list(SiteListKind::kStorage, settings, strings, [](auto& name) { return name; });
  list.Fill();
  return use(list);
}

const Operation kOperations[] = {
    {"by-site Remove", kOneSite, false,
     [](Profile& profile, std::string*) {
       return WithStorageList(profile, [](SiteListModel& list) -> std::optional<bool> {
         return list.RowCount() == 0 || !list.RemoveRows({0}).empty();
       });
     }},
    {"by-site storage Block", kOneSite, false,
     [](Profile& profile, std::string*) {
       return WithStorageList(profile, [](SiteListModel& list) -> std::optional<bool> {
         if (list.RowCount() > 0) list.ApplyChoice(0, kChoiceBlock, {0});
         return std::nullopt;  // the by-site lists report nothing
       });
     }},
    {"Storage page Block", kAllSites | kCaches, false,
     [](Profile& profile, std::string*) -> std::optional<bool> {
       SMSettingsManager settings(*profile.platform);
       ScriptedPrompts prompts({true});
       return ApplyStorageChoice(settings, prompts, kStorageAllow, kStorageBlock) != kStorageBlock;
     }},
    {"Clear data with licences", kAllSites | kCaches | kLicences, false,
     [](Profile& profile, std::string*) -> std::optional<bool> {
       SMSettingsManager settings(*profile.platform);
       SMPrivateDataFolder licences(profile.platform->PrivateDataFolder(), profile.platform.get());
       ScriptedPrompts prompts;
       ClearDataOutcome outcome =
           ClearAllData(settings, *profile.platform, licences, prompts, {true, true});
       return outcome.siteDataFailed || outcome.licenceFilesFailed;
     }},
    {"vpsettings remove-site", kOneSite, true,
     [](Profile& profile, std::string* message) {
       return RunTool(profile, {"remove-site", kSite}, message);
     }},
    {"vpsettings site storage block", kOneSite, true,
     [](Profile& profile, std::string* message) {
       return RunTool(profile, {"site", kSite, "storage", "block"}, message);
     }},
    {"vpsettings clear --licenses", kAllSites | kCaches | kLicences, true,
     [](Profile& profile, std::string* message) {
       return RunTool(profile, {"clear", "--licenses"}, message);
     }},
};

// A roaming folder of 234 units: the data root fits the player's 260-unit buffer exactly, the
// caches' and licences' suffixes are cut one unit into their own names.
std::string RoamingOf234Units(const TempFolder& temp) {
  std::string roaming = temp.Utf8("R");
  while (roaming.size() < 234) {
    const size_t length = std::min<size_t>(200, 233 - roaming.size());
    roaming.push_back(kPathSeparator);
    roaming.append(length, 'r');
  }
  return roaming;
}

}  // namespace

TEST(DataPathGuard, NoOperationLosesAByteOutsideThePlayersFolders) {
  struct Layout {
    const char* name;
    std::function<std::string(const TempFolder&)> roaming;   // nullptr: the usual folder
    std::function<std::vector<fs::path>(Profile&)> arrange;  // gives the canaries to watch
    unsigned met;       // the deletions that meet a link or a cut path
    unsigned refused;   // those that fail natively too; under Wine every one met fails
    bool linkOnTheWay;  // the tool names the link that made a deletion fail
    // The tool refuses such a folder option outright; whether it does is the tool's own test.
    bool badFolderOption;
  };
  auto canary = [](Profile& profile) { return std::vector<fs::path>{profile.canary}; };
  const Layout layouts[] = {
      {"#SharedObjects is a link", nullptr,
       [&](Profile& p) {
         p.LinkToCanary(p.SharedObjects());
         return canary(p);
       },
       kOneSite | kAllSites, kOneSite | kAllSites, true, false},
      {"its first sub-folder is a link", nullptr,
       [&](Profile& p) {
         p.LinkToCanary(p.SharedObjects() / "X1");
         return canary(p);
       },
       kOneSite | kAllSites, kOneSite, true, false},
      {"the site's folder is a link", nullptr,
       [&](Profile& p) {
         p.LinkToCanary(p.SiteData());
         return canary(p);
       },
       kOneSite | kAllSites, 0, false, false},
      {"links inside the site's folder", nullptr,
       [&](Profile& p) {
         MakeLink(p.canary, p.SiteData() / "folder-link");
         MakeLink(p.canary / "c.sol", p.SiteData() / "file-link");
         return canary(p);
       },
       kOneSite | kAllSites, 0, false, false},
      {"the caches and the licence folder are links", nullptr,
       [&](Profile& p) {
         for (const std::string* folder :
              {&p.platform->AssetCacheFolder(), &p.platform->VXCacheFolder(),
               &p.platform->PrivateDataFolder()}) {
           p.LinkToCanary(Profile::Path(*folder));
         }
         return canary(p);
       },
       kCaches | kLicences, 0, false, false},
      {"cut cache and licence paths name siblings", RoamingOf234Units,
       [&](Profile& p) {
         const fs::path vendor =
             Profile::Path(p.system.roamingAppData) / "Brinmor" / "Vantrel Player";
         for (const char* sibling : {"A", "V", "K"})
           WriteFileBytes(vendor / sibling / "s", sibling);
         return std::vector<fs::path>{vendor};
       },
       kCaches | kLicences, kCaches | kLicences, false, true},
      {"a roaming folder that is not UTF-8", [](const TempFolder&) { return std::string("\xFF"); },
       [&](Profile&) {
         // Built on an empty root, the paths would start at the root of the drive.
         return std::vector<fs::path>{"/tessaline.com", "/#SharedObjects", "/Brinmor"};
       },
       kEverywhere, kEverywhere, false, true},
  };
  for (const Layout& layout : layouts) {
    for (const Operation& operation : kOperations) {
      SCOPED_TRACE(std::string(layout.name) + " / " + operation.name);
      TempFolder roamingPlace;
      Profile profile(layout.roaming ? layout.roaming(roamingPlace) : "");
      const std::vector<fs::path> canaries = layout.arrange(profile);
      std::vector<std::map<std::string, std::string>> before;
      for (const fs::path& folder : canaries) before.push_back(FolderSnapshot(folder));

      std::string message;
      std::optional<bool> failed = operation.run(profile, &message);

      for (size_t i = 0; i < canaries.size(); ++i) {
        EXPECT_EQ(FolderSnapshot(canaries[i]), before[i]) << canaries[i];
      }
      if (!failed || (operation.tool && layout.badFolderOption)) continue;
      const unsigned fails = UnderWine() ? layout.met : layout.refused;
      EXPECT_EQ(*failed, (operation.touches & fails) != 0);
      if ((operation.touches & layout.refused) != 0 && layout.linkOnTheWay && operation.tool) {
        EXPECT_NE(message.find("link " + PathToUtf8(profile.lastLink)), std::string::npos)
            << message;
      }
    }
  }
}
