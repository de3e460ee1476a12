#include <gtest/gtest.h>

#include <optional>

#include "pages/camera_mic_logic.h"
#include "pages/playback_logic.h"
#include "pages/storage_logic.h"
#include "pages/updates_logic.h"
#include "support/fake_system.h"

namespace {

// The radio each page shows for the stored value. What a storage limit means is the per-site
// rules' (tested with them); the Storage page only maps it onto its own radio order.
TEST(PageRefreshTest, StoredValueShownAsTheRadioThePlayerMeans) {
  const std::pair<int, int> cases[] = {
      {StorageIndexForLimit(std::nullopt), kStorageAllow},
      {StorageIndexForLimit(0.0), kStorageAsk},
      {StorageIndexForLimit(-1.0), kStorageBlock},
      {CameraMicIndexForAlways(std::nullopt), kCameraMicAsk},
      {CameraMicIndexForAlways(false), kCameraMicAsk},
      {CameraMicIndexForAlways(true), kCameraMicBlock},
      {PlaybackViewForUplink(std::nullopt).index, kPlaybackAsk},
      {PlaybackViewForUplink(false).index, kPlaybackAsk},
      {PlaybackViewForUplink(true).index, kPlaybackBlock},
  };
  for (size_t row = 0; row < std::size(cases); ++row)
    EXPECT_EQ(cases[row].first, cases[row].second) << "row " << row;
}

// The administrator's lock reads its value as the player reads booleans (whose table is with
// the reader of booleans): one true, one false.
TEST(CameraMicRefreshTest, AdministratorLock) {
  const std::pair<const char*, bool> cases[] = {{"AVHardwareDisable = yes\n", true},
                                                {"AVHardwareDisable=off\n", false}};
  for (const auto& [file, locked] : cases) {
    SMAdminConfig config("");
    config.LoadFromBytes(file);
    EXPECT_EQ(IsCameraMicLockedByAdministrator(config), locked) << file;
  }
}

TEST(UpdatesRefreshTest, LockAdministratorAndVersionLines) {
  struct Case {
    const char* name;
    bool windows8;
    bool chrome;
    bool admin;
    bool npapi;
    bool ppapi;
    bool locked;
    bool radiosEnabled;
    bool changeVisible;
  };
  const Case cases[] = {
      {"admin, plug-in installed", true, false, true, true, false, false, true, false},
      {"user, plug-in installed", true, false, false, false, true, false, false, true},
      {"chrome mode beats admin", true, true, true, true, true, true, false, false},
      {"Windows 8, no plug-in version", true, false, true, false, false, true, false, false},
      {"Windows 7, no plug-in version", false, false, false, false, false, false, false, true},
  };
  for (const Case& test : cases) {
    UpdatesFacts facts;
    facts.windows8OrLater = test.windows8;
    facts.chromeMode = test.chrome;
    facts.userAdmin = test.admin;
    if (test.npapi) facts.npapiVersion = "32.0.0.465";
    if (test.ppapi) facts.ppapiVersion = "32.0.0.466";
    UpdatesView view = ComputeUpdatesView(facts);
    EXPECT_EQ(view.locked, test.locked) << test.name;
    EXPECT_EQ(view.radiosEnabled, test.radiosEnabled) << test.name;
    EXPECT_EQ(view.changeButtonVisible, test.changeVisible) << test.name;
  }
}

TEST(UpdatesRefreshTest, FactsComeFromTheCommandLineRegistryAndAdministratorFile) {
  FakeSystem system;
  system.windows8OrLater = false;
  system.userAdmin = true;
  system.commandLine = "C:\\x\\VantrelPlayerApp.exe mode=chrome";
  system.AddPlayer(PlayerKind::ActiveX, "31.0.0.1");
  system.AddPlayer(PlayerKind::Ppapi, "32.0.0.466");
  UpdatesFacts facts = GatherUpdatesFacts(system, SMAdminConfig(""));
  EXPECT_TRUE(facts.chromeMode);
  EXPECT_TRUE(facts.userAdmin);
  EXPECT_EQ(facts.activeXVersion, "31.0.0.1");
  EXPECT_EQ(facts.npapiVersion, std::nullopt);
  EXPECT_EQ(facts.ppapiVersion, "32.0.0.466");
}

}  // namespace
