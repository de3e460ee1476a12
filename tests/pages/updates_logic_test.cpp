// The Updates page: which facts lock it, where they come from, and what a click stores.
#include "pages/updates_logic.h"

#include <gtest/gtest.h>

#include <optional>

#include "platform/update_service.h"
#include "support/fake_system.h"
#include "support/temp_folder.h"

namespace {

// What the user can do on the page: change the mode, ask an administrator to, or only look.
enum class Offered { kRadios, kChangeButton, kNothing, kInconsistent };

Offered OfferedBy(const UpdatesView& view) {
  if (view.locked) {
    return view.radiosEnabled || view.changeButtonVisible ? Offered::kInconsistent
                                                          : Offered::kNothing;
  }
  if (view.radiosEnabled == view.changeButtonVisible) return Offered::kInconsistent;
  return view.radiosEnabled ? Offered::kRadios : Offered::kChangeButton;
}

TEST(UpdatesLogic, LockAdministratorAndVersionLines) {
  struct Case {
    const char* name;
    UpdatesFacts facts;
    Offered offered;
  };
  const Case cases[] = {
      {.name = "admin, plug-in installed",
       .facts = {.windows8OrLater = true, .userAdmin = true, .npapiVersion = "32.0.0.465"},
       .offered = Offered::kRadios},
      {.name = "user, plug-in installed",
       .facts = {.windows8OrLater = true, .ppapiVersion = "32.0.0.466"},
       .offered = Offered::kChangeButton},
      {.name = "chrome mode beats admin",
       .facts =
           {.windows8OrLater = true, .chromeMode = true, .userAdmin = true, .npapiVersion = "32"},
       .offered = Offered::kNothing},
      {.name = "Windows 8, no plug-in version",
       .facts = {.windows8OrLater = true, .userAdmin = true},
       .offered = Offered::kNothing},
      {.name = "Windows 7, no plug-in version", .facts = {}, .offered = Offered::kChangeButton},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(OfferedBy(ComputeUpdatesView(test.facts)), test.offered) << test.name;
  }
}

TEST(UpdatesLogic, FactsComeFromTheCommandLineRegistryAndAdministratorFile) {
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

// What is stored, and how a failed write is reported, is the update service's (its tests sit
// with it); the page shows the chosen mode only once it is stored.
TEST(UpdatesLogic, ModeStaysWhenNothingCouldBeStored) {
  TempFolder temp;
  FakeSystem system;
  SMAdminConfig writable(PathToUtf8(temp.path() / "tss.cfg"));
  EXPECT_EQ(ApplyUpdatesChoice(system, &writable, kUpdateNever, kUpdateAutomatically),
            kUpdateAutomatically);
  SMAdminConfig unwritable(PathToUtf8(temp.path() / "missing" / "tss.cfg"));
  EXPECT_EQ(ApplyUpdatesChoice(system, &unwritable, kUpdateNotify, kUpdateNever), kUpdateNotify);
  // Without a mode (no radio checked) nothing is stored either.
  EXPECT_EQ(ApplyUpdatesChoice(system, &writable, kUpdateAutomatically, -1), kUpdateAutomatically);
  EXPECT_EQ(ReadUpdateMode(writable), kUpdateAutomatically);
}

}  // namespace
