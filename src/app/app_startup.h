#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "admincfg/admin_config.h"
#include "l10n/string_table.h"
#include "platform/platform_services.h"
#include "platform/private_data_folder.h"
#include "platform/system.h"
#include "settings/settings_manager.h"

// The five pages in the order they are constructed.
enum class SMPageKind : int { kStorage = 0, kCameraMic, kPlayback, kUpdates, kAdvanced };
inline constexpr int kPageKindCount = 5;

// The tab title of a page.
TextId PageTitleId(SMPageKind kind);

// What every page receives: non-owning references to the central objects.
struct SMAppObjects {
  SMSystem& system;
  SMSettingsManager& settings;
  SMStringTable& strings;
  SMAdminConfig& adminConfig;
  SMPrivateDataFolder& privateData;
  // The data folders the clear data dialog empties besides the store's own.
  SMPlatformServices& platform;
};

// The property sheet as the entry sees it. The Windows program implements it with the real
// sheet and page windows; tests record the calls.
class SMSheetFrame {
 public:
  virtual ~SMSheetFrame() = default;
  virtual void CreateSheet(const std::string& caption, bool rightToLeft) = 0;
  virtual void CreatePage(SMPageKind kind, const SMAppObjects& objects, bool rightToLeft) = 0;
  virtual void SetPageTitle(SMPageKind kind, const std::string& title) = 0;
  // False when the system refuses the page; the other pages are still added.
  virtual bool AddPage(SMPageKind kind) = 0;
  virtual void SetStartPage(int index) = 0;
  // Runs the sheet modally over the desktop; returns when the user closes it.
  virtual void RunModal() = 0;
  // Pages in reverse order of construction, then the sheet.
  virtual void DestroyPagesAndSheet() = 0;
};

// Creates the central objects; tests substitute their own to watch creation and teardown.
class SMAppFactory {
 public:
  virtual ~SMAppFactory() = default;
  virtual std::unique_ptr<SMPlatformServices> CreatePlatform(SMSystem& system) = 0;
  virtual std::unique_ptr<SMSettingsManager> CreateSettings(SMPlatformServices& platform);
  virtual std::unique_ptr<SMStringTable> CreateStringTable(SMSystem& system);
  virtual std::unique_ptr<SMAdminConfig> CreateAdminConfig(const std::string& path);
};

// The start page chosen by the command line, or -1 when no keyword applies. The indices are
// fixed numbers: with the Updates page present "startupdialog=advanced" selects index 3, which
// is Updates. The elevated relaunch from the Updates page passes that keyword and relies on it.
int StartPageIndex(const std::string& commandLine, bool updatesWanted);

// The whole run: the Updates decision, central objects, pages, start page, the modal sheet,
// teardown. Returns the process exit status (0, also when the central objects were missing).
int RunSettingsApplication(SMSystem& system, SMAppFactory& factory, SMSheetFrame& frame);
