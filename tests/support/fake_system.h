#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/installed_players.h"
#include "platform/system.h"

// A scripted operating system: tests set the facts and read back what the program did.
class FakeSystem : public SMSystem {
 public:
  struct Launch {
    std::string commandLine;
    uint32_t timeoutMs;
  };

  // Registry contents: keys that exist, and their values as raw bytes.
  void AddRegistryKey(RegistryRoot root, const std::string& subKey);
  void SetRegistryValue(RegistryRoot root, const std::string& subKey, const std::string& name,
                        std::vector<uint8_t> bytes);
  void SetRegistryNumber(RegistryRoot root, const std::string& subKey, const std::string& name,
                         uint32_t number);
  // A REG_SZ value as Windows stores it: UTF-16LE with its terminating zero.
  void SetRegistryText(RegistryRoot root, const std::string& subKey, const std::string& name,
                       const std::string& asciiText);
  // A player's key as its 32-bit installer writes it, with its version (if any).
  void AddPlayer(PlayerKind kind, const std::string& version = "");

  bool OpenRegistryKey(RegistryRoot root, const std::string& subKey) override;
  std::optional<std::vector<uint8_t>> QueryRegistryValue(const RegistryQuery& query) override;
  bool IsWindows8OrLater() override { return windows8OrLater; }
  bool IsUserAdmin() override { return userAdmin; }
  uint16_t UserDefaultUILanguage() override;
  std::string CommandLine() override { return commandLine; }
  std::string ModulePath() override { return modulePath; }
  std::optional<uint32_t> RunAndWait(const std::string& commandLine, uint32_t timeoutMs) override;
  bool LaunchElevated(const std::string& program, const std::string& parameters) override;
  [[noreturn]] void ExitProcess(int status) override;
  void OpenUrl(void*, const char*) override {}
  std::optional<std::string> ShellFolderPath(int csidl) override;
  std::string SystemWow64Directory() override { return systemWow64; }
  std::string SystemDirectory() override { return systemDirectory; }

  // Facts.
  bool windows8OrLater = true;
  bool userAdmin = false;
  std::vector<uint16_t> uiLanguages{0x0409};  // successive answers; the last one repeats
  std::string commandLine = "VantrelPlayerApp.exe";
  std::string modulePath = "C:\\Windows\\SysWOW64\\VantrelPlayerApp.exe";
  std::map<std::string, uint32_t> exitCodes;  // by program prefix of the command line
  bool launchStarts = true;
  bool elevationGranted = false;
  std::string roamingAppData;
  std::string localAppData;
  bool shellFolderQueryFails = false;
  std::string systemWow64;
  std::string systemDirectory;

  // What the program did.
  std::vector<Launch> launches;
  std::vector<std::string> elevations;  // "program|parameters"
  std::vector<int> shellFolderQueries;
  int uiLanguageQueries = 0;

 private:
  std::map<std::string, std::map<std::string, std::vector<uint8_t>>> registry_;
};

// The 32-bit view of HKEY_LOCAL_MACHINE, where the players and the update service register.
inline constexpr SMSystem::RegistryRoot kHklm32 = SMSystem::RegistryRoot::LocalMachine32;

// Thrown by FakeSystem::ExitProcess so that a test can see the process would have ended.
struct FakeProcessExit {
  int status;
};
