#include "platform/update_service.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/fake_system.h"
#include "support/temp_folder.h"

namespace {

const std::string kService =
    "C:\\Program Files\\Vantrel\\Tessalin\\Vantrel\\VantrelPlayerUpdateService.exe ";
const std::string kPepperUninstaller = "C:\\Windows\\SysWOW64\\Vantrel\\PepperUninstall.exe";
const std::string kPluginUninstaller = "C:\\Windows\\SysWOW64\\Vantrel\\PluginUninstall.exe";

enum Player { Missing, Plain, Debugger };  // Debugger: a script-debugger build

struct Machine {
  FakeSystem system;
  Machine(Player ppapi = Plain, Player npapi = Plain) {
    system.modulePath = "C:\\Program Files\\Vantrel\\VantrelPlayerApp.exe";
    Install("SOFTWARE\\Tessaline\\VantrelPlayerPepper", kPepperUninstaller, ppapi);
    Install("SOFTWARE\\Tessaline\\VantrelPlayerPlugin", kPluginUninstaller, npapi);
  }
  void Install(const char* key, const std::string& uninstaller, Player player) {
    if (player == Missing) return;
    system.SetRegistryText(kHklm32, key, "UninstallerPath", uninstaller);
    system.SetRegistryNumber(kHklm32, key, "isScriptDebugger", player == Debugger);
  }
  std::vector<std::string> CommandLines() const {
    std::vector<std::string> lines;
    for (const FakeSystem::Launch& launch : system.launches) {
      lines.push_back(launch.commandLine);
      EXPECT_EQ(launch.timeoutMs, 600000u) << launch.commandLine;
    }
    return lines;
  }
};

}  // namespace

TEST(UpdateService, ReadUpdateModeLetsDisablingWin) {
  const std::pair<const char*, UpdateMode> cases[] = {
      {"", kUpdateNotify},
      {"SilentAutoUpdateEnable=1\nAutoUpdateDisable=0\n", kUpdateAutomatically},
      {"SilentAutoUpdateEnable=1\nAutoUpdateDisable=1\n", kUpdateNever},
  };
  for (const auto& [adminFile, expected] : cases) {
    SMAdminConfig config("");
    config.LoadFromBytes(adminFile);
    EXPECT_EQ(ReadUpdateMode(config), expected) << adminFile;
  }
}

TEST(UpdateService, EachModeLaunchesTheServiceThenThePlayersInOrder) {
  struct Case {
    int mode;
    Player ppapi, npapi;
    const char* service;  // nullptr: nothing runs at all
    const char* pepper;   // the notification switch's value; nullptr: not run
    const char* plugin;
  };
  // Script-debugger builds keep their notifications on; only "never" reaches them. A player
  // that is not installed has no uninstaller to run.
  const Case cases[] = {
      {0, Plain, Plain, "-install", "1", "1"},
      {1, Plain, Plain, "-uninstall", "1", "1"},
      {2, Plain, Plain, "-uninstall", "0", "0"},
      {1, Plain, Debugger, "-uninstall", "1", nullptr},
      {2, Debugger, Debugger, "-uninstall", "0", "0"},
      {2, Missing, Plain, "-uninstall", nullptr, "0"},
      {3, Plain, Plain, nullptr, nullptr, nullptr},
      {-1, Plain, Plain, nullptr, nullptr, nullptr},
  };
  for (const Case& c : cases) {
    std::vector<std::string> expected;
    if (c.service) expected.push_back(kService + c.service);
    if (c.pepper) expected.push_back(kPepperUninstaller + " -setppapinotification " + c.pepper);
    if (c.plugin) expected.push_back(kPluginUninstaller + " -setnpapinotification " + c.plugin);
    Machine machine(c.ppapi, c.npapi);
    EXPECT_FALSE(ApplyUpdateMode(machine.system, nullptr, c.mode));
    EXPECT_EQ(machine.CommandLines(), expected)
        << "mode " << c.mode << " ppapi " << c.ppapi << " npapi " << c.npapi;
  }
}

// The CR LF of the Windows file is the Windows players test's.
TEST(UpdateService, ApplyUpdateModeRewritesTheAdministratorFileOrFailsAndReloads) {
  struct Case {
    int mode;
    const char* before;  // nullptr: no file yet
    const char* after;
  };
  const Case cases[] = {
      {1, "SilentAutoUpdateEnable = 1\nAutoUpdateDisable = 0\nAVHardwareDisable=1\n",
       "SilentAutoUpdateEnable=0\nAutoUpdateDisable=0\nAVHardwareDisable=1\n"},
      {2, nullptr, "SilentAutoUpdateEnable=0\nAutoUpdateDisable=1\n"},
  };
  TempFolder folder;
  const std::filesystem::path file = folder.path() / "tss.cfg";
  for (const Case& c : cases) {
    std::filesystem::remove(file);
    if (c.before != nullptr) WriteFileBytes(file, c.before);
    SMAdminConfig config(PathToUtf8(file));
    Machine machine;
    // The launches' failures do not stop the mode from being stored.
    machine.system.exitCodes[kService] = 1;
    EXPECT_TRUE(ApplyUpdateMode(machine.system, &config, c.mode)) << c.mode;
    std::string written = ReadFileBytes(file);
    std::erase(written, '\r');
    EXPECT_EQ(written, c.after) << c.mode;
    EXPECT_EQ(ReadUpdateMode(config), c.mode);
  }
  // A missing folder is not created: the file can be neither written nor read.
  for (const std::string& path :
       {PathToUtf8(folder.path() / "missing" / "tss.cfg"), std::string()}) {
    SMAdminConfig config(path);
    config.SetValue("AVHardwareDisable", "1");
    Machine machine;
    EXPECT_FALSE(ApplyUpdateMode(machine.system, &config, kUpdateNever)) << path;
    // Reloaded from the unreadable file: nothing of what was set stays behind.
    EXPECT_TRUE(config.entries().empty()) << path;
    EXPECT_EQ(machine.system.launches.size(), 3u) << path;
  }
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "missing"));
}

TEST(UpdateService, CommandLinesLongerThan259CharactersAreNotRun) {
  const std::string tail = "\\Tessalin\\Vantrel\\VantrelPlayerUpdateService.exe -install";
  const std::string pad(258 - 3 - tail.size(), 'a');
  // Characters are UTF-16 units: an e-acute is one, a character beyond U+FFFF is two.
  const std::pair<std::string, bool> cases[] = {
      {"C:\\" + pad + "a", true},
      {"C:\\" + pad + "aa", false},
      {"C:\\" + pad + "\xC3\xA9", true},
      {"C:\\" + pad + "\xF0\x9F\x8E\xB5", false},
  };
  for (const auto& [folder, runs] : cases) {
    Machine machine;
    machine.system.modulePath = folder + "\\VantrelPlayerApp.exe";
    EXPECT_EQ(RunUpdateService(machine.system, "-install"), runs) << folder.size();
    EXPECT_EQ(machine.system.launches.size(), runs ? 1u : 0u) << folder.size();
  }
}

TEST(UpdateService, RelaunchElevatedEndsThisProcessOnlyWhenTheCopyStarted) {
  for (bool granted : {false, true}) {
    Machine machine;
    machine.system.elevationGranted = granted;
    std::optional<int> exitStatus;
    try {
      RelaunchElevated(machine.system);
    } catch (const FakeProcessExit& exit) {
      exitStatus = exit.status;
    }
    EXPECT_EQ(exitStatus, granted ? std::optional<int>(0) : std::nullopt);
    EXPECT_EQ(machine.system.elevations,
              std::vector<std::string>{"C:\\Program Files\\Vantrel\\VantrelPlayerApp.exe|"
                                       "startupdialog=advanced"});
  }
}
