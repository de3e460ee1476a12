// The profile commands, run as a separate process against a throwaway profile. The rules behind
// them are the settings, dialogs and platform tests' tables; here one pass through each command
// and its argument errors.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli_harness.h"

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

json Json(const ProcessResult& result) {
  EXPECT_EQ(result.exitCode, 0) << result.err;
  return json::parse(result.out);
}

class Cli : public ::testing::Test {
 protected:
  CliHarness cli_;
};

}  // namespace

TEST_F(Cli, ShowGivesDefaultsOnFirstRunAndSetChangesOneKey) {
  ProcessResult shown = cli_.Run({"show"});
  EXPECT_EQ(Lines(shown.out).rfind("autoUpdateInterval\tnumber\t14\n", 0), 0u) << shown.err;
  EXPECT_EQ(cli_.Run({"set", "defaultklimit", "250.5"}).exitCode, 0);
  EXPECT_EQ(cli_.Run({"set", "disallowP2PUplink", "true"}).exitCode, 0);
  EXPECT_EQ(cli_.Run({"set", "note", "hello there", "--type", "string"}).exitCode, 0);
  const std::string after = Lines(cli_.Run({"show"}).out);
  for (const char* line :
       {"\ndefaultklimit\tnumber\t250.5\n", "\ndisallowP2PUplink\tboolean\ttrue\n",
        "\nnote\tstring\thello there\n"}) {
    EXPECT_NE(after.find(line), std::string::npos) << line << after;
  }
}

TEST_F(Cli, SitePermissionsAreWrittenShownAndRemoved) {
  ASSERT_EQ(cli_.Run({"site", "example.com", "storage", "allow"}).exitCode, 0);
  ASSERT_EQ(cli_.Run({"site", "media.example", "cammic", "allow"}).exitCode, 0);
  ASSERT_EQ(cli_.Run({"site", "media.example", "p2p", "block"}).exitCode, 0);
  WriteFileBytes(cli_.StoredData("example.com") / "a.sol", std::string(1536, 'x'));
  EXPECT_EQ(Lines(cli_.Run({"sites"}).out),
            "example.com\tallow\task\task\task\t1 kB\n"
            "media.example\tallow\tallow\tallow\tblock\t0 bytes\n");
  EXPECT_EQ(Json(cli_.Run({"--json", "site", "example.com"}))[0]["storedBytes"], 1536);

  WriteFileBytes(cli_.StoredData("media.example") / "x.sol", "data");
  ASSERT_EQ(cli_.Run({"remove-site", "media.example", "--keep-settings"}).exitCode, 0);
  EXPECT_FALSE(fs::exists(cli_.StoredData("media.example")));
  EXPECT_TRUE(fs::exists(cli_.SiteFile("media.example")));
  ASSERT_EQ(cli_.Run({"remove-site", "media.example"}).exitCode, 0);
  EXPECT_FALSE(fs::exists(cli_.SiteFile("media.example")));

  EXPECT_EQ(cli_.Run({"site", "unknown.example"}).exitCode, 1);
  EXPECT_EQ(cli_.Run({"site", "a.example", "storage", "maybe"}).exitCode, 2);
  EXPECT_EQ(cli_.Run({"site", "a.example", "storage"}).exitCode, 2);
  EXPECT_FALSE(fs::exists(cli_.SiteFile("a.example")));
}

TEST_F(Cli, ClearKeepsLicencesUnlessAsked) {
  ASSERT_EQ(cli_.Run({"site", "one.example", "p2p", "allow"}).exitCode, 0);
  const fs::path licence = cli_.folder().path() / "Roaming" / "Brinmor" / "Vantrel Player" /
                           "KPSPrivateData2" / "licence.bin";
  WriteFileBytes(licence, "l");
  ASSERT_EQ(cli_.Run({"clear"}).exitCode, 0);
  EXPECT_FALSE(fs::exists(cli_.SiteFile("one.example")));
  EXPECT_TRUE(fs::exists(licence));
  ASSERT_EQ(cli_.Run({"clear", "--licenses"}).exitCode, 0);
  EXPECT_FALSE(fs::exists(licence));
}

TEST_F(Cli, TrustedLocationsAreAddedListedAndRemoved) {
  ASSERT_EQ(cli_.Run({"trusted", "add", "C:\\dev\\one.vtm"}).exitCode, 0);
  ASSERT_EQ(cli_.Run({"trusted", "add", "C:\\dev\\folder"}).exitCode, 0);
  ASSERT_EQ(cli_.Run({"trusted", "remove", "C:\\dev\\folder"}).exitCode, 0);
  EXPECT_EQ(cli_.Run({"trusted", "remove", "C:\\nowhere"}).exitCode, 1);
  EXPECT_EQ(Lines(cli_.Run({"trusted"}).out), "C:\\dev\\one.vtm\n");
}

TEST_F(Cli, StringsAndAdminFile) {
  const std::string german = Lines(cli_.RunBare({"strings", "--lang", "0x0407"}).out);
  EXPECT_NE(german.find("\n11001\tAbbrechen\n"), std::string::npos) << german;
  EXPECT_EQ(cli_.RunBare({"strings", "--lang", "german"}).exitCode, 2);

  EXPECT_EQ(cli_.Run({"admin", "get", "AutoUpdateDisable"}).exitCode, 1);
  ASSERT_EQ(cli_.Run({"admin", "set", "AutoUpdateDisable", "0"}).exitCode, 0);
  ASSERT_EQ(cli_.Run({"admin", "set", "SilentAutoUpdateEnable", "0"}).exitCode, 0);
  const std::string listed = "AutoUpdateDisable=0\nSilentAutoUpdateEnable=0\n";
  EXPECT_EQ(Lines(ReadFileBytes(cli_.AdminFile())), listed);
  EXPECT_EQ(Lines(cli_.Run({"admin"}).out), listed);
  EXPECT_EQ(Lines(cli_.Run({"admin", "get", "SilentAutoUpdateEnable"}).out), "0\n");
  EXPECT_EQ(cli_.Run({"admin", "get"}).exitCode, 2);
  EXPECT_EQ(cli_.Run({"admin", "remove", "x"}).exitCode, 2);
}

TEST_F(Cli, PathsFromAWinePrefix) {
  const fs::path prefix = cli_.folder().path() / "prefix";
  const fs::path profile = prefix / "drive_c" / "users" / "player" / "AppData";
  fs::create_directories(prefix / "drive_c" / "users" / "Public");
  fs::create_directories(profile / "Roaming");
  fs::create_directories(profile / "Local");
  const fs::path adminFile =
      prefix / "drive_c" / "windows" / "syswow64" / "Tessalin" / "Vantrel" / "tss.cfg";
  WriteFileBytes(adminFile, "EnableLocalAppData=1\n");
  json paths = Json(cli_.RunBare({"--wineprefix", PathToUtf8(prefix), "--json", "paths"}));
  EXPECT_EQ(paths["data-root"], PathToUtf8(profile / "Local" / "Tessaline" / "Vantrel Player"));
  EXPECT_EQ(paths["vx-cache"],
            PathToUtf8(profile / "Roaming" / "Brinmor" / "Vantrel Player" / "VXCache"));
  EXPECT_EQ(paths["admin-file"], PathToUtf8(adminFile));
}
