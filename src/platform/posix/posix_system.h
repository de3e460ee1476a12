#pragma once

#include <string>

#include "platform/system.h"

// The three base folders that Windows names for the player, given explicitly off Windows.
struct PosixFolders {
  std::string roamingAppData;
  std::string localAppData;
  std::string systemWow64;  // holds Tessalin/Vantrel/tss.cfg
};

// Off Windows: folders from configuration, no registry, no installed players, no launches.
class PosixSystem : public SMSystem {
 public:
  explicit PosixSystem(PosixFolders folders) : folders_(std::move(folders)) {}

  bool OpenRegistryKey(RegistryRoot, const std::string&) override { return false; }
  std::optional<std::vector<uint8_t>> QueryRegistryValue(const RegistryQuery&) override {
    return std::nullopt;
  }
  bool IsWindows8OrLater() override { return true; }
  bool IsUserAdmin() override;
  uint16_t UserDefaultUILanguage() override;
  std::string CommandLine() override;
  std::string ModulePath() override;
  std::optional<uint32_t> RunAndWait(const std::string&, uint32_t) override { return std::nullopt; }
  bool LaunchElevated(const std::string&, const std::string&) override { return false; }
  [[noreturn]] void ExitProcess(int status) override;
  void OpenUrl(void*, const char*) override {}
  std::optional<std::string> ShellFolderPath(int csidl) override;
  std::string SystemWow64Directory() override { return folders_.systemWow64; }
  std::string SystemDirectory() override { return folders_.systemWow64; }

 private:
  PosixFolders folders_;
};

// The Windows language identifier for a POSIX locale name such as "de_DE.UTF-8" (0x0409 when
// the locale is unknown).
uint16_t LanguageIdForLocale(const std::string& locale);
