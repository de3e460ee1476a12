// What the tool refuses, what --force lets through, and commands that only look leaving a
// damaged profile exactly as it was.
#include <gtest/gtest.h>

#include "cli_harness.h"

namespace {

namespace fs = std::filesystem;

const std::string kGarbage = "not a settings file";
const std::string kUtf16AdminFile = std::string(
    "\xFF\xFE"
    "A\0=\0"
    "1\0",
    8);

class Refusals : public ::testing::Test {
 protected:
  // Two known sites; bad.example's settings file is then damaged.
  void SetUp() override {
    ASSERT_EQ(cli_.Run({"site", "good.example", "storage", "allow"}).exitCode, 0);
    ASSERT_EQ(cli_.Run({"site", "bad.example", "p2p", "allow"}).exitCode, 0);
    WriteFileBytes(cli_.SiteFile("bad.example"), kGarbage);
  }
  CliHarness cli_;
};

}  // namespace

TEST_F(Refusals, CommandsThatOnlyLookWriteNothing) {
  WriteFileBytes(cli_.AdminFile(), kUtf16AdminFile);
  struct Row {
    std::vector<std::string> arguments;
    int exitCode;
    std::string errorNames;  // a file the message must name; empty for none
  };
  const std::string badSite = PathToUtf8(cli_.SiteFile("bad.example"));
  const std::string master = PathToUtf8(cli_.MasterFile());
  const Row readableMaster[] = {
      {{"sites"}, 1, badSite},
      {{"site", "bad.example"}, 1, badSite},
      {{"site", "good.example"}, 0},
      {{"show"}, 0},
      {{"trusted"}, 0},
      {{"admin"}, 0},
      {{"admin", "get", "A"}, 1},
      {{"paths"}, 0},
  };
  const Row damagedMaster[] = {
      {{"show"}, 1, master},         {{"sites"}, 1, master}, {{"trusted"}, 1, master},
      {{"dump", master}, 1, master}, {{"paths"}, 0},
  };
  const auto before = cli_.Snapshot();
  for (const Row& row : readableMaster) {
    ProcessResult result = cli_.Run(row.arguments);
    EXPECT_EQ(result.exitCode, row.exitCode) << row.arguments[0] << result.err;
    EXPECT_NE(result.err.find(row.errorNames), std::string::npos) << result.err;
  }
  EXPECT_NE(Lines(cli_.Run({"sites"}).out).find("good.example\tallow"), std::string::npos);
  EXPECT_EQ(cli_.Snapshot(), before);

  WriteFileBytes(cli_.MasterFile(), kGarbage);
  const auto damaged = cli_.Snapshot();
  for (const Row& row : damagedMaster) {
    ProcessResult result = cli_.Run(row.arguments);
    EXPECT_EQ(result.exitCode, row.exitCode) << row.arguments[0] << result.err;
    EXPECT_NE(result.err.find(row.errorNames), std::string::npos) << result.err;
  }
  EXPECT_EQ(cli_.Snapshot(), damaged);
}

TEST_F(Refusals, DamagedFilesAreReplacedOnlyWithForce) {
  WriteFileBytes(cli_.AdminFile(), kUtf16AdminFile);
  struct Row {
    std::vector<std::string> arguments;
    fs::path damagedFile;
    std::string damage;
  };
  const Row rows[] = {
      {{"set", "defaultklimit", "5"}, cli_.MasterFile(), kGarbage},
      {{"trusted", "add", "C:\\dev"}, cli_.MasterFile(), kGarbage.substr(0, 3)},
      {{"remove-site", "good.example"}, cli_.MasterFile(), kGarbage},
      {{"clear"}, cli_.MasterFile(), kGarbage},
      {{"site", "bad.example", "cammic", "block"}, cli_.SiteFile("bad.example"), kGarbage},
      {{"admin", "set", "AutoUpdateDisable", "1"}, cli_.AdminFile(), kUtf16AdminFile},
  };
  for (const Row& row : rows) {
    WriteFileBytes(row.damagedFile, row.damage);
    ProcessResult refused = cli_.Run(row.arguments);
    EXPECT_EQ(refused.exitCode, 1) << row.arguments[0];
    EXPECT_NE(refused.err.find(PathToUtf8(row.damagedFile)), std::string::npos) << refused.err;
    EXPECT_EQ(ReadFileBytes(row.damagedFile), row.damage) << row.arguments[0];

    std::vector<std::string> forced = row.arguments;
    forced.push_back("--force");
    EXPECT_EQ(cli_.Run(forced).exitCode, 0) << row.arguments[0];
    EXPECT_NE(ReadFileBytes(row.damagedFile), row.damage) << row.arguments[0];
  }
}

TEST_F(Refusals, ValuesThatWouldNotReadBackAreRefused) {
  const std::vector<std::string> refused[] = {
      {"set", "defaultklimit", "lots"},
      {"set", "defaultalways", "1"},
      {"set", "newkey", "1"},
      {"set", "domains", "x"},
      {"set", "defaultklimit", "5", "--type", "string"},
      {"set", "defaultklimit", "nan"},
      {"set", "defaultklimit", "inf"},
      {"set", "defaultklimit", "Infinity"},
      {"admin", "set", "A=B", "C"},
      {"admin", "set", "Note", "hello\nAutoUpdateDisable=0"},
      {"admin", "set", "Note", "a\rb"},
      {"admin", "set", " Note", "x"},
      {"admin", "set", "Note", "caf\xC3\xA9"},
      {"admin", "set", "Note", ""},
      // Never a site: the list cannot hold the empty name, and the master domain is the global
      // settings (its removal would take the whole settings folder).
      {"site", "", "storage", "allow"},
      {"site", "___MASTER_DOMAIN", "cammic", "allow"},
      {"remove-site", "___MASTER_DOMAIN"},
  };
  WriteFileBytes(cli_.AdminFile(), "AutoUpdateDisable=1\n");
  const auto before = cli_.Snapshot();
  for (const std::vector<std::string>& arguments : refused) {
    EXPECT_EQ(cli_.Run(arguments).exitCode, 2) << arguments[0] << " " << arguments[1];
  }
  EXPECT_EQ(cli_.Snapshot(), before);
}

TEST_F(Refusals, RemovingAnUnknownSiteDeletesItsFoldersAndSaysSo) {
  const fs::path stored = cli_.StoredData("gone.example");
  WriteFileBytes(stored / "a.sol", "data");
  const std::string sites = cli_.Run({"sites"}).out;
  ProcessResult result = cli_.Run({"remove-site", "gone.example"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.err.find("gone.example is not a known site"), std::string::npos) << result.err;
  EXPECT_FALSE(fs::exists(stored));
  EXPECT_EQ(cli_.Run({"sites"}).out, sites);
}

TEST_F(Refusals, AFailedWriteNamesTheFileAndTheSystemsReason) {
  // A file where the settings folder should be: nothing below it can be written.
  fs::remove_all(cli_.SettingsFolder());
  WriteFileBytes(cli_.SettingsFolder(), "");
  ProcessResult result = cli_.Run({"set", "defaultklimit", "5"});
  EXPECT_EQ(result.exitCode, 1);
  const std::string named = "could not write " + PathToUtf8(cli_.MasterFile()) + ": ";
  ASSERT_NE(result.err.find(named), std::string::npos) << result.err;
  EXPECT_EQ(result.err.find("gave no reason"), std::string::npos) << result.err;
}

TEST_F(Refusals, FoldersThatAreNotUtf8OrTooLongAreRefusedByName) {
  struct Row {
    std::string option;
    std::string folder;
  };
  std::vector<Row> rows;
#ifndef _WIN32
  // A Windows command line is UTF-16 text: bytes that are not UTF-8 cannot be given there.
  rows.push_back({"--appdata", cli_.folder().Utf8("") + "\xFF"});
  rows.push_back({"--local-appdata", "\xC3"});
#endif
  // The player's folders built on it would not fit in 260 units: cut, they name a sibling.
  rows.push_back({"--appdata", cli_.folder().Utf8("") + std::string(240, 'r')});
  const auto before = cli_.Snapshot();
  for (const Row& row : rows) {
    std::map<std::string, std::string> folders = {{"--appdata", cli_.folder().Utf8("Roaming")},
                                                  {"--local-appdata", cli_.folder().Utf8("Local")},
                                                  {"--system-dir", cli_.folder().Utf8("syswow64")}};
    folders[row.option] = row.folder;
    std::vector<std::string> arguments = {"set", "defaultklimit", "5"};
    for (const auto& [option, folder] : folders)
      arguments.insert(arguments.begin(), {option, folder});
    ProcessResult result = cli_.RunBare(arguments);
    EXPECT_EQ(result.exitCode, 2) << row.option;
    EXPECT_NE(result.err.find(row.option), std::string::npos) << result.err;
  }
  EXPECT_EQ(cli_.Snapshot(), before);
}
