#include "app/app_startup.h"

#include <array>
#include <string_view>

#include "platform/installed_players.h"

namespace {

struct StartKeyword {
  std::string_view keyword;
  int index;
};

// Tested in this order; the first keyword found wins.
constexpr std::array<StartKeyword, 5> kStartKeywords{{
    {"startupdialog=storage", 0},
    {"startupdialog=cammic", 1},
    {"startupdialog=playback", 2},
    {"startupdialog=advanced", 3},
    {"startupdialog=updates", 4},
}};

constexpr std::array<SMPageKind, kPageKindCount> kConstructionOrder{
    SMPageKind::kStorage, SMPageKind::kCameraMic, SMPageKind::kPlayback, SMPageKind::kUpdates,
    SMPageKind::kAdvanced};

std::string CopyOrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

// The central objects in creation order; destroyed explicitly in the teardown order.
struct CentralObjects {
  std::unique_ptr<SMPlatformServices> platform;
  std::unique_ptr<SMPrivateDataFolder> privateData;
  std::unique_ptr<SMSettingsManager> settings;
  std::unique_ptr<SMStringTable> strings;
  std::unique_ptr<SMAdminConfig> adminConfig;

  void Destroy() {
    strings.reset();
    adminConfig.reset();
    if (privateData) privateData->ForgetPlatform();
    privateData.reset();
    settings.reset();
    platform.reset();
  }
};

void BuildPages(SMSystem& system, CentralObjects& central, SMSheetFrame& frame,
                bool updatesWanted) {
  SMAppObjects objects{system,
                       *central.settings,
                       *central.strings,
                       *central.adminConfig,
                       *central.privateData,
                       *central.platform};
  frame.CreateSheet(CopyOrEmpty(central.strings->GetString(TextId::kSheetCaption)),
                    IsRightToLeftLanguage(system.UserDefaultUILanguage()));
  for (SMPageKind kind : kConstructionOrder) {
    // Asked again for every page, as the sheet does for itself.
    bool rightToLeft = IsRightToLeftLanguage(system.UserDefaultUILanguage());
    frame.CreatePage(kind, objects, rightToLeft);
  }
  for (SMPageKind kind : kConstructionOrder) {
    frame.SetPageTitle(kind, CopyOrEmpty(central.strings->GetString(PageTitleId(kind))));
  }
  for (SMPageKind kind : kConstructionOrder) {
    if (kind == SMPageKind::kUpdates && !updatesWanted) continue;
    frame.AddPage(kind);
  }
  int startIndex = StartPageIndex(system.CommandLine(), updatesWanted);
  if (startIndex >= 0) frame.SetStartPage(startIndex);
}

}  // namespace

TextId PageTitleId(SMPageKind kind) {
  switch (kind) {
    case SMPageKind::kCameraMic:
      return TextId::kCameraMicTitle;
    case SMPageKind::kPlayback:
      return TextId::kPlaybackTitle;
    case SMPageKind::kUpdates:
      return TextId::kUpdatesTitle;
    case SMPageKind::kAdvanced:
      return TextId::kAdvancedTitle;
    case SMPageKind::kStorage:
      break;
  }
  return TextId::kStorageTitle;
}

std::unique_ptr<SMSettingsManager> SMAppFactory::CreateSettings(SMPlatformServices& platform) {
  return std::make_unique<SMSettingsManager>(platform);
}

std::unique_ptr<SMStringTable> SMAppFactory::CreateStringTable(SMSystem& system) {
  return std::make_unique<SMUserLanguageStringTable>(system);
}

std::unique_ptr<SMAdminConfig> SMAppFactory::CreateAdminConfig(const std::string& path) {
  return std::make_unique<SMAdminConfig>(path);
}

int StartPageIndex(const std::string& commandLine, bool updatesWanted) {
  for (const StartKeyword& entry : kStartKeywords) {
    if (commandLine.find(entry.keyword) == std::string::npos) continue;
    if (entry.index == 4 && !updatesWanted) return -1;
    return entry.index;
  }
  return -1;
}

int RunSettingsApplication(SMSystem& system, SMAppFactory& factory, SMSheetFrame& frame) {
  bool updatesWanted = WantsUpdatesPage(system);

  CentralObjects central;
  central.platform = factory.CreatePlatform(system);
  std::string privatePath = central.platform ? central.platform->PrivateDataFolder() : "";
  central.privateData =
      std::make_unique<SMPrivateDataFolder>(std::move(privatePath), central.platform.get());
  if (central.platform) central.settings = factory.CreateSettings(*central.platform);
  central.strings = factory.CreateStringTable(system);
  central.adminConfig = factory.CreateAdminConfig(AdminConfigFilePath(system));

  if (!central.settings || !central.adminConfig || !central.strings) {
    central.Destroy();
    return 0;
  }

  BuildPages(system, central, frame, updatesWanted);
  frame.RunModal();
  central.Destroy();
  frame.DestroyPagesAndSheet();
  return 0;
}
