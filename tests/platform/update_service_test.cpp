#include "platform/update_service.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/fake_system.h"
#include "support/temp_folder.h"

namespace {

constexpr SMSystem::RegistryRoot kHklm32 = SMSystem::RegistryRoot::LocalMachine32;
const char* const kPepper = "SOFTWARE\\Tessaline\\VantrelPlayerPepper";
const char* const kPlugin = "SOFTWARE\\Tessaline\\VantrelPlayerPlugin";
const char* const kService =
    "C:\\Program Files\\Vantrel\\Tessalin\\Vantrel\\VantrelPlayerUpdateService.exe ";
const char* const kPepperUninstaller = "C:\\Windows\\SysWOW64\\Vantrel\\PepperUninstall.exe";
const char* const kPluginUninstaller = "C:\\Windows\\SysWOW64\\Vantrel\\PluginUninstall.exe";

// The administrator file is written in text mode, so Windows ends its lines with CR LF.
#ifdef _WIN32
const char* const kLineEnd = "\r\n";
#else
const char* const kLineEnd = "\n";
#endif

enum class Player { Missing, Plain, ScriptDebugger };

struct Machine {
  FakeSystem system;
  Machine(Player ppapi, Player npapi) {
    system.modulePath = "C:\\Program Files\\Vantrel\\VantrelPlayerApp.exe";
    Install(kPepper, kPepperUninstaller, ppapi);
    Install(kPlugin, kPluginUninstaller, npapi);
  }
  void Install(const char* key, const char* uninstaller, Player player) {
    if (player == Player::Missing) return;
    system.SetRegistryText(kHklm32, key, "UninstallerPath", uninstaller);
    system.SetRegistryNumber(kHklm32, key, "isScriptDebugger", player == Player::ScriptDebugger);
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

std::string Lines(std::initializer_list<const char*> lines) {
  std::string text;
  for (const char* line : lines) text += std::string(line) + kLineEnd;
  return text;
}

}  // namespace

TEST(UpdateService, ReadUpdateModeLetsDisablingWin) {
  struct Case {
    const char* adminFile;
    UpdateMode expected;
  };
  const Case cases[] = {
      {"", kUpdateNotify},
      {"SilentAutoUpdateEnable=1\nAutoUpdateDisable=0\n", kUpdateAutomatically},
      {"SilentAutoUpdateEnable=0\nAutoUpdateDisable=0\n", kUpdateNotify},
      {"SilentAutoUpdateEnable=0\nAutoUpdateDisable=1\n", kUpdateNever},
      {"SilentAutoUpdateEnable=1\nAutoUpdateDisable=1\n", kUpdateNever},
      {"SilentAutoUpdateEnable=yes\n", kUpdateAutomatically},
      {"AutoUpdateDisable=TRUE\n", kUpdateNever},
      {"AutoUpdateDisable=off\nSilentAutoUpdateEnable=y\n", kUpdateAutomatically},
      {"autoupdatedisable=1\nsilentautoupdateenable=1\n", kUpdateNotify},
  };
  for (const Case& c : cases) {
    SMAdminConfig config("");
    config.LoadFromBytes(c.adminFile);
    EXPECT_EQ(ReadUpdateMode(config), c.expected) << c.adminFile;
  }
}

TEST(UpdateService, EachModeLaunchesTheServiceThenThePlayersInOrder) {
  const std::string service = kService;
  const std::string pepper = kPepperUninstaller;
  const std::string plugin = kPluginUninstaller;
  struct Case {
    int mode;
    Player ppapi, npapi;
    std::vector<std::string> expected;
  };
  const Case cases[] = {
      {0,
       Player::Plain,
       Player::Plain,
       {service + "-install", pepper + " -setppapinotification 1",
        plugin + " -setnpapinotification 1"}},
      {1,
       Player::Plain,
       Player::Plain,
       {service + "-uninstall", pepper + " -setppapinotification 1",
        plugin + " -setnpapinotification 1"}},
      {2,
       Player::Plain,
       Player::Plain,
       {service + "-uninstall", pepper + " -setppapinotification 0",
        plugin + " -setnpapinotification 0"}},
      // Script-debugger builds keep their notifications on; only "never" reaches them.
      {0,
       Player::Plain,
       Player::ScriptDebugger,
       {service + "-install", pepper + " -setppapinotification 1"}},
      {0,
       Player::ScriptDebugger,
       Player::Plain,
       {service + "-install", plugin + " -setnpapinotification 1"}},
      {1, Player::ScriptDebugger, Player::ScriptDebugger, {service + "-uninstall"}},
      {2,
       Player::ScriptDebugger,
       Player::ScriptDebugger,
       {service + "-uninstall", pepper + " -setppapinotification 0",
        plugin + " -setnpapinotification 0"}},
      // A player that is not installed has no uninstaller to run.
      {0,
       Player::Plain,
       Player::Missing,
       {service + "-install", pepper + " -setppapinotification 1"}},
      {1,
       Player::Plain,
       Player::Missing,
       {service + "-uninstall", pepper + " -setppapinotification 1"}},
      {2,
       Player::Plain,
       Player::Missing,
       {service + "-uninstall", pepper + " -setppapinotification 0"}},
      {2, Player::Missing, Player::Missing, {service + "-uninstall"}},
      {3, Player::Plain, Player::Plain, {}},
      {-1, Player::Plain, Player::Plain, {}},
  };
  for (const Case& c : cases) {
    Machine machine(c.ppapi, c.npapi);
    ApplyUpdateMode(machine.system, nullptr, c.mode);
    EXPECT_EQ(machine.CommandLines(), c.expected)
        << "mode " << c.mode << " ppapi " << static_cast<int>(c.ppapi) << " npapi "
        << static_cast<int>(c.npapi);
  }
}

TEST(UpdateService, ApplyUpdateModeRewritesTheAdministratorFile) {
  struct Case {
    int mode;
    const char* before;
    std::string after;
  };
  const Case cases[] = {
      {0, "EnableLocalAppData=1\r\nAutoUpdateDisable=1\n",
       Lines({"EnableLocalAppData=1", "AutoUpdateDisable=0", "SilentAutoUpdateEnable=1"})},
      {1, "SilentAutoUpdateEnable = 1\nAutoUpdateDisable = 0\nAVHardwareDisable=1\n",
       Lines({"SilentAutoUpdateEnable=0", "AutoUpdateDisable=0", "AVHardwareDisable=1"})},
      {2, nullptr, Lines({"SilentAutoUpdateEnable=0", "AutoUpdateDisable=1"})},
  };
  for (const Case& c : cases) {
    TempFolder folder;
    const std::filesystem::path file = folder.path() / "tss.cfg";
    if (c.before != nullptr) WriteFileBytes(file, c.before);
    SMAdminConfig config(PathToUtf8(file));
    Machine machine(Player::Plain, Player::Plain);
    // The launches' failures do not stop the mode from being stored.
    machine.system.exitCodes[kService] = 1;
    EXPECT_TRUE(ApplyUpdateMode(machine.system, &config, c.mode)) << c.mode;
    EXPECT_EQ(ReadFileBytes(file), c.after) << c.mode;
    EXPECT_EQ(ReadUpdateMode(config), c.mode);
    EXPECT_EQ(machine.system.launches.size(), 3u);
  }
}

TEST(UpdateService, ApplyUpdateModeFailsWhenTheFileCannotBeWrittenAndStillReloads) {
  TempFolder folder;
  // A folder where the file should be: it can be neither written nor read.
  const std::filesystem::path blocked = folder.path() / "tss.cfg";
  std::filesystem::create_directories(blocked);
  const std::string missingFolder = PathToUtf8(folder.path() / "missing" / "tss.cfg");
  for (const std::string& path : {PathToUtf8(blocked), missingFolder, std::string()}) {
    SMAdminConfig config(path);
    config.SetValue("AVHardwareDisable", "1");
    Machine machine(Player::Plain, Player::Plain);
    EXPECT_FALSE(ApplyUpdateMode(machine.system, &config, kUpdateNever)) << path;
    // Reloaded from the unreadable file: nothing of what was set stays behind.
    EXPECT_TRUE(config.entries().empty()) << path;
    EXPECT_EQ(ReadUpdateMode(config), kUpdateNotify) << path;
    EXPECT_EQ(machine.system.launches.size(), 3u) << path;
  }
  EXPECT_TRUE(std::filesystem::is_directory(blocked));
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "missing"));
}

TEST(UpdateService, ServiceResultIsItsExitCode) {
  struct Case {
    const char* what;
    bool starts;
    std::optional<uint32_t> exitCode;
    bool expected;
  };
  const Case cases[] = {
      {"exit 0", true, std::nullopt, true},
      {"exit 1", true, 1u, false},
      {"still running after the wait", true, 259u, false},
      {"exit 0xFFFFFFFF", true, 0xFFFFFFFFu, false},
      {"not started", false, std::nullopt, false},
  };
  for (const Case& c : cases) {
    Machine machine(Player::Plain, Player::Plain);
    machine.system.launchStarts = c.starts;
    if (c.exitCode) machine.system.exitCodes[kService] = *c.exitCode;
    if (c.exitCode) machine.system.exitCodes[kPepperUninstaller] = *c.exitCode;
    EXPECT_EQ(RunUpdateService(machine.system, "-install"), c.expected) << c.what;
    EXPECT_EQ(RunPpapiUninstaller(machine.system, " -setppapinotification 1"), c.expected)
        << c.what;
    EXPECT_EQ(machine.CommandLines(), (std::vector<std::string>{std::string(kService) + "-install",
                                                                std::string(kPepperUninstaller) +
                                                                    " -setppapinotification 1"}))
        << c.what;
  }
}

TEST(UpdateService, CommandLinesLongerThan259CharactersAreNotRun) {
  const std::string tail = "\\Tessalin\\Vantrel\\VantrelPlayerUpdateService.exe -install";
  struct Case {
    const char* what;
    std::string folder;  // the command line is folder + tail
    bool runs;
  };
  const Case cases[] = {
      {"259 characters", "C:\\" + std::string(259 - 3 - tail.size(), 'a'), true},
      {"260 characters", "C:\\" + std::string(260 - 3 - tail.size(), 'a'), false},
      // Characters are UTF-16 units: an e-acute is one, a character beyond U+FFFF is two.
      {"259 units, more bytes", "C:\\" + std::string(258 - 3 - tail.size(), 'a') + "\xC3\xA9",
       true},
      {"260 units with a surrogate pair",
       "C:\\" + std::string(258 - 3 - tail.size(), 'a') + "\xF0\x9F\x8E\xB5", false},
  };
  for (const Case& c : cases) {
    Machine machine(Player::Plain, Player::Plain);
    machine.system.modulePath = c.folder + "\\VantrelPlayerApp.exe";
    EXPECT_EQ(RunUpdateService(machine.system, "-install"), c.runs) << c.what;
    std::vector<std::string> expected;
    if (c.runs) expected.push_back(c.folder + tail);
    EXPECT_EQ(machine.CommandLines(), expected) << c.what;
  }
}

TEST(UpdateService, UninstallersNeedAnInstalledPath) {
  Machine machine(Player::Missing, Player::Plain);
  machine.system.SetRegistryText(kHklm32, kPlugin, "UninstallerPath", "");
  EXPECT_FALSE(RunPpapiUninstaller(machine.system, " -setppapinotification 1"));
  EXPECT_FALSE(RunNpapiUninstaller(machine.system, " -setnpapinotification 1"));
  EXPECT_TRUE(machine.system.launches.empty());
}

TEST(UpdateService, RelaunchElevatedEndsThisProcessOnlyWhenTheCopyStarted) {
  for (bool granted : {false, true}) {
    FakeSystem system;
    system.modulePath = "C:\\Program Files\\Vantrel\\VantrelPlayerApp.exe";
    system.elevationGranted = granted;
    std::optional<int> exitStatus;
    try {
      RelaunchElevated(system);
    } catch (const FakeProcessExit& exit) {
      exitStatus = exit.status;
    }
    EXPECT_EQ(exitStatus, granted ? std::optional<int>(0) : std::nullopt);
    EXPECT_EQ(system.elevations,
              std::vector<std::string>{"C:\\Program Files\\Vantrel\\VantrelPlayerApp.exe|"
                                       "startupdialog=advanced"});
  }
}
