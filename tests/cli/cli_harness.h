#pragma once

#include <string>
#include <vector>

#include "support/process_runner.h"
#include "support/temp_folder.h"

// Text output of the Windows build has CR LF line ends.
inline std::string Lines(std::string text) {
  std::erase(text, '\r');
  return text;
}

// A throwaway profile (roaming, local and 32-bit system folders) and the built tool.
class CliHarness {
 public:
  // The player has run here before: its settings folder exists (the program creates at most
  // one missing folder level per write, as the player does).
  CliHarness() { std::filesystem::create_directories(SettingsFolder()); }

  ProcessResult Run(const std::vector<std::string>& arguments, const std::string& input = "") {
    std::vector<std::string> all = {"--appdata",       folder_.Utf8("Roaming"),
                                    "--local-appdata", folder_.Utf8("Local"),
                                    "--system-dir",    folder_.Utf8("syswow64")};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return RunBare(all, input);
  }
  // Without the folder options.
  ProcessResult RunBare(const std::vector<std::string>& arguments, const std::string& input = "") {
    return RunProcess(BesideTestProgram(VPSETTINGS_RELATIVE_PATH), arguments, input);
  }
  std::filesystem::path DataRoot() const {
    return folder_.path() / "Roaming" / "Tessaline" / "Vantrel Player";
  }
  std::filesystem::path SettingsFolder() const {
    return DataRoot() / "tessaline.com" / "support" / "vantrelplayer" / "sys";
  }
  std::filesystem::path MasterFile() const { return SettingsFolder() / "settings.sol"; }
  std::filesystem::path AdminFile() const {
    return folder_.path() / "syswow64" / "Tessalin" / "Vantrel" / "tss.cfg";
  }
  const TempFolder& folder() const { return folder_; }

 private:
  TempFolder folder_;
};
