#pragma once

#include "platform/system.h"

// The real operating system.
class Win32System : public SMSystem {
 public:
  bool OpenRegistryKey(RegistryRoot root, const std::string& subKey) override;
  std::optional<std::vector<uint8_t>> QueryRegistryValue(const RegistryQuery& query) override;
  bool IsWindows8OrLater() override;
  bool IsUserAdmin() override;
  uint16_t UserDefaultUILanguage() override;
  std::string CommandLine() override;
  std::string ModulePath() override;
  std::optional<uint32_t> RunAndWait(const std::string& commandLine, uint32_t timeoutMs) override;
  bool LaunchElevated(const std::string& program, const std::string& parameters) override;
  [[noreturn]] void ExitProcess(int status) override;
  void OpenUrl(void* ownerWindow, const char* address) override;
  std::optional<std::string> ShellFolderPath(int csidl) override;
  std::string SystemWow64Directory() override;
  std::string SystemDirectory() override;
  std::string DisplaySortKey(const std::string& text) override;
  std::string FoldCase(const std::string& text) override;
};
