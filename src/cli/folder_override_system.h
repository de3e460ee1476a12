#pragma once

#include <cstdlib>
#include <string>

#include "platform/system.h"

// The real system with the three base folders replaced where the user named them.
class FolderOverrideSystem : public SMSystem {
 public:
  FolderOverrideSystem(SMSystem& base, std::string roaming, std::string local,
                       std::string systemFolder)
      : base_(base),
        roaming_(std::move(roaming)),
        local_(std::move(local)),
        systemFolder_(std::move(systemFolder)) {}

  bool OpenRegistryKey(RegistryRoot root, const std::string& subKey) override {
    return base_.OpenRegistryKey(root, subKey);
  }
  std::optional<std::vector<uint8_t>> QueryRegistryValue(const RegistryQuery& query) override {
    return base_.QueryRegistryValue(query);
  }
  bool IsWindows8OrLater() override { return base_.IsWindows8OrLater(); }
  bool IsUserAdmin() override { return base_.IsUserAdmin(); }
  uint16_t UserDefaultUILanguage() override { return base_.UserDefaultUILanguage(); }
  std::string CommandLine() override { return base_.CommandLine(); }
  std::string ModulePath() override { return base_.ModulePath(); }
  std::optional<uint32_t> RunAndWait(const std::string& commandLine, uint32_t timeoutMs) override {
    return base_.RunAndWait(commandLine, timeoutMs);
  }
  bool LaunchElevated(const std::string& program, const std::string& parameters) override {
    return base_.LaunchElevated(program, parameters);
  }
  [[noreturn]] void ExitProcess(int status) override {
    base_.ExitProcess(status);
    std::_Exit(status);  // not reached: the base ends the process
  }
  void OpenUrl(void* ownerWindow, const char* address) override {
    base_.OpenUrl(ownerWindow, address);
  }
  std::optional<std::string> ShellFolderPath(int csidl) override;
  std::string SystemWow64Directory() override {
    return systemFolder_.empty() ? base_.SystemWow64Directory() : systemFolder_;
  }
  std::string SystemDirectory() override {
    return systemFolder_.empty() ? base_.SystemDirectory() : systemFolder_;
  }

 private:
  SMSystem& base_;
  std::string roaming_;
  std::string local_;
  std::string systemFolder_;
};
