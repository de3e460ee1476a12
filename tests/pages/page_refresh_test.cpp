#include <gtest/gtest.h>

#include <cmath>
#include <optional>

#include "pages/camera_mic_logic.h"
#include "pages/playback_logic.h"
#include "pages/storage_logic.h"
#include "pages/updates_logic.h"
#include "support/fake_system.h"

namespace {

TEST(StorageRefreshTest, LimitShownAsTheRadioThePlayerMeans) {
  struct Case {
    std::optional<double> limit;
    int index;
  };
  const Case cases[] = {
      {std::nullopt, kStorageAllow}, {100.0, kStorageAllow},
      {10.0, kStorageAllow},         {0.0, kStorageAsk},
      {-0.0, kStorageAsk},           {-1.0, kStorageBlock},
      {-2.0, kStorageAllow},         {NAN, kStorageAllow},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(StorageIndexForLimit(test.limit), test.index)
        << (test.limit ? std::to_string(*test.limit) : "absent");
  }
}

TEST(CameraMicRefreshTest, AlwaysFlagAndAdministratorLock) {
  EXPECT_EQ(CameraMicIndexForAlways(std::nullopt), kCameraMicAsk);
  EXPECT_EQ(CameraMicIndexForAlways(false), kCameraMicAsk);
  EXPECT_EQ(CameraMicIndexForAlways(true), kCameraMicBlock);

  struct Case {
    const char* file;
    bool locked;
  };
  const Case cases[] = {
      {"", false},
      {"AVHardwareDisable=1\n", true},
      {"AVHardwareDisable=yes\n", true},
      {"AVHardwareDisable = TRUE\n", true},
      {"AVHardwareDisable=0\n", false},
      {"AVHardwareDisable=off\n", false},
      {"OtherKey=1\n", false},
  };
  for (const Case& test : cases) {
    SMAdminConfig config("");
    config.LoadFromBytes(std::string("# x\n") + test.file);
    EXPECT_EQ(IsCameraMicLockedByAdministrator(config), test.locked) << test.file;
  }
}

TEST(PlaybackRefreshTest, BlockDisablesTheBySiteButton) {
  PlaybackView absent = PlaybackViewForUplink(std::nullopt);
  EXPECT_EQ(absent.index, kPlaybackAsk);
  EXPECT_TRUE(absent.bySiteEnabled);
  PlaybackView ask = PlaybackViewForUplink(false);
  EXPECT_EQ(ask.index, kPlaybackAsk);
  EXPECT_TRUE(ask.bySiteEnabled);
  PlaybackView block = PlaybackViewForUplink(true);
  EXPECT_EQ(block.index, kPlaybackBlock);
  EXPECT_FALSE(block.bySiteEnabled);
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
      {"chrome mode before Windows 8", false, true, false, false, false, true, false, false},
      {"Windows 8, no plug-in version", true, false, true, false, false, true, false, false},
      {"Windows 7, no plug-in version", false, false, false, false, false, false, false, true},
  };
  for (const Case& test : cases) {
    UpdatesFacts facts;
    facts.windows8OrLater = test.windows8;
    facts.chromeMode = test.chrome;
    facts.userAdmin = test.admin;
    facts.mode = 2;
    if (test.npapi) facts.npapiVersion = "32.0.0.465";
    if (test.ppapi) facts.ppapiVersion = "32.0.0.466";
    UpdatesView view = ComputeUpdatesView(facts);
    EXPECT_EQ(view.locked, test.locked) << test.name;
    EXPECT_EQ(view.radiosEnabled, test.radiosEnabled) << test.name;
    EXPECT_EQ(view.changeButtonVisible, test.changeVisible) << test.name;
    EXPECT_EQ(view.showActiveXLine, !test.windows8) << test.name;
    EXPECT_EQ(view.mode, 2) << test.name;
  }
}

TEST(UpdatesRefreshTest, FactsComeFromTheCommandLineRegistryAndAdministratorFile) {
  constexpr auto kMachine = SMSystem::RegistryRoot::LocalMachine32;
  FakeSystem system;
  system.windows8OrLater = false;
  system.userAdmin = true;
  system.commandLine = "C:\\x\\VantrelPlayerApp.exe mode=chrome";
  system.AddRegistryKey(kMachine, "SOFTWARE\\Tessaline\\VantrelPlayerActiveX");
  system.SetRegistryText(kMachine, "SOFTWARE\\Tessaline\\VantrelPlayerActiveX", "Version",
                         "31.0.0.1");
  system.AddRegistryKey(kMachine, "SOFTWARE\\Tessaline\\VantrelPlayerPepper");
  system.SetRegistryText(kMachine, "SOFTWARE\\Tessaline\\VantrelPlayerPepper", "Version",
                         "32.0.0.466");
  SMAdminConfig config("");
  config.LoadFromBytes("AutoUpdateDisable=1\nSilentAutoUpdateEnable=1\n");

  UpdatesFacts facts = GatherUpdatesFacts(system, config);
  EXPECT_TRUE(facts.chromeMode);
  EXPECT_TRUE(facts.userAdmin);
  EXPECT_EQ(facts.mode, 2);  // disabling wins over silent install
  EXPECT_EQ(facts.activeXVersion, "31.0.0.1");
  EXPECT_EQ(facts.npapiVersion, std::nullopt);
  EXPECT_EQ(facts.ppapiVersion, "32.0.0.466");

  // From Windows 8 on the ActiveX key is not read at all.
  system.windows8OrLater = true;
  system.commandLine = "C:\\x\\VantrelPlayerApp.exe mode=Chrome";
  facts = GatherUpdatesFacts(system, config);
  EXPECT_FALSE(facts.chromeMode);
  EXPECT_EQ(facts.activeXVersion, std::nullopt);
}

}  // namespace
