#pragma once

#include <map>
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
  std::filesystem::path SiteFile(const std::string& site) const {
    return SettingsFolder() / ("#" + site) / "settings.sol";
  }
  std::filesystem::path StoredData(const std::string& site) const {
    return DataRoot() / "#SharedObjects" / "ABCD1234" / site;
  }
  std::filesystem::path AdminFile() const {
    return folder_.path() / "syswow64" / "Tessalin" / "Vantrel" / "tss.cfg";
  }
  const TempFolder& folder() const { return folder_; }
  // Every file and folder of the profile: its bytes and its modification time.
  std::map<std::string, std::string> Snapshot() const {
    std::map<std::string, std::string> entries;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_.path())) {
      entries[PathToUtf8(entry.path())] =
          (entry.is_regular_file() ? ReadFileBytes(entry.path()) : "") + " @" +
          std::to_string(entry.last_write_time().time_since_epoch().count());
    }
    return entries;
  }

 private:
  TempFolder folder_;
};
