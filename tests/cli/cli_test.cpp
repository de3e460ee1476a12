// The profile commands, run as a separate process against a throwaway profile.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli_harness.h"
#include "l10n/string_data.h"

namespace {

using nlohmann::json;

json Json(const ProcessResult& result) {
  EXPECT_EQ(result.exitCode, 0) << result.err;
  return json::parse(result.out);
}

// The pairs of a settings file, decoded by the tool itself.
json FilePairs(CliHarness& cli, const std::filesystem::path& file) {
  ProcessResult dumped = cli.RunBare({"--json", "dump", PathToUtf8(file)});
  if (dumped.exitCode != 0) return json();
  json document = json::parse(dumped.out);
  json pairs = json::object();
  for (const json& pair : document["pairs"]) pairs[pair["name"].get<std::string>()] = pair["value"];
  return pairs;
}

class Cli : public ::testing::Test {
 protected:
  std::filesystem::path SiteFile(const std::string& site) {
    return cli_.SettingsFolder() / ("#" + site) / "settings.sol";
  }
  std::filesystem::path StoredData(const std::string& site) {
    return cli_.DataRoot() / "#SharedObjects" / "ABCD1234" / site;
  }
  CliHarness cli_;
};

}  // namespace

TEST_F(Cli, PathsNameEveryLocation) {
  json paths = Json(cli_.Run({"--json", "paths"}));
  const std::string roaming = cli_.folder().Utf8("Roaming");
  EXPECT_EQ(paths["data-root"], PathToUtf8(cli_.DataRoot()));
  EXPECT_EQ(paths["settings-folder"], PathToUtf8(cli_.SettingsFolder()));
  EXPECT_EQ(paths["master-file"], PathToUtf8(cli_.MasterFile()));
  // The other folders' names are the platform tests' table; here they only have to be listed.
  for (const char* key : {"stored-data-folder", "asset-cache", "vx-cache", "private-data-folder"}) {
    EXPECT_EQ(paths[key].get<std::string>().rfind(roaming, 0), 0u) << key;
  }
  EXPECT_EQ(paths["admin-file"], PathToUtf8(cli_.AdminFile()));

  // As text: one name and its path a line.
  EXPECT_NE(Lines(cli_.Run({"paths"}).out).find("data-root\t" + PathToUtf8(cli_.DataRoot()) + "\n"),
            std::string::npos);
}

TEST_F(Cli, ShowWritesDefaultsOnFirstRunAndSetChangesOneKey) {
  ProcessResult shown = cli_.Run({"show"});
  ASSERT_EQ(shown.exitCode, 0) << shown.err;
  // The defaults in the file's own table order (the settings tests pin the bytes).
  const std::string lines = Lines(shown.out);
  EXPECT_EQ(lines.rfind("autoUpdateInterval\tnumber\t14\n", 0), 0u) << lines;
  EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 11) << lines;
  EXPECT_TRUE(std::filesystem::exists(cli_.MasterFile()));

  const std::string before = ReadFileBytes(cli_.MasterFile());
  struct Case {
    std::vector<std::string> arguments;
    int exitCode;
  };
  const Case refused[] = {
      {{"set", "defaultklimit", "lots"}, 2},
      {{"set", "defaultalways", "1"}, 2},
      {{"set", "newkey", "1"}, 2},
      {{"set", "domains", "x"}, 2},
      {{"set", "defaultklimit", "5", "--type", "string"}, 2},
      {{"set", "x", "1", "--type", "colour"}, 2},
  };
  for (const Case& c : refused) {
    ProcessResult result = cli_.Run(c.arguments);
    EXPECT_EQ(result.exitCode, c.exitCode) << c.arguments[1] << " " << c.arguments[2];
    EXPECT_FALSE(result.err.empty());
    EXPECT_EQ(ReadFileBytes(cli_.MasterFile()), before) << "a refused set wrote the file";
  }
  EXPECT_EQ(cli_.Run({"set", "defaultklimit", "250.5"}).exitCode, 0);
  EXPECT_EQ(cli_.Run({"set", "disallowP2PUplink", "true"}).exitCode, 0);
  EXPECT_EQ(cli_.Run({"set", "note", "hello there", "--type", "string"}).exitCode, 0);
  json pairs = FilePairs(cli_, cli_.MasterFile());
  EXPECT_EQ(pairs["defaultklimit"], 250.5);
  EXPECT_EQ(pairs["disallowP2PUplink"], true);
  EXPECT_EQ(pairs["note"], "hello there");
  EXPECT_EQ(pairs["autoUpdateInterval"], 14);
}

TEST_F(Cli, SitePermissionsAreWrittenAndShownWithTheDialogsRules) {
  ASSERT_EQ(cli_.Run({"site", "example.com", "storage", "block"}).exitCode, 0);
  ASSERT_EQ(cli_.Run({"site", "media.example", "cammic", "allow"}).exitCode, 0);
  ASSERT_EQ(cli_.Run({"site", "media.example", "p2p", "block"}).exitCode, 0);
  WriteFileBytes(StoredData("media.example") / "a.sol", std::string(1536, 'x'));

  EXPECT_EQ(FilePairs(cli_, SiteFile("example.com"))["klimit"], -1);
  EXPECT_EQ(FilePairs(cli_, SiteFile("media.example")), json({{"always", true},
                                                              {"allow", true},
                                                              {"alwayssecure", true},
                                                              {"allowsecure", true},
                                                              {"p2palways", true},
                                                              {"p2pallow", false},
                                                              {"klimit", 100}}));

  ProcessResult sites = cli_.Run({"sites"});
  EXPECT_EQ(Lines(sites.out),
            "example.com\tblock\task\task\task\t0 bytes\n"
            "media.example\tallow\tallow\tallow\tblock\t1 kB\n");
  json one = Json(cli_.Run({"--json", "site", "media.example"}));
  ASSERT_EQ(one.size(), 1u);
  EXPECT_EQ(one[0]["storedBytes"], 1536);
  EXPECT_EQ(one[0]["cammic"]["https"], "allow");

  // Blocking storage of a known site deletes what it stored at once.
  ASSERT_EQ(cli_.Run({"site", "media.example", "storage", "block"}).exitCode, 0);
  EXPECT_FALSE(std::filesystem::exists(StoredData("media.example")));
  EXPECT_TRUE(std::filesystem::exists(SiteFile("media.example")));

  EXPECT_EQ(cli_.Run({"site", "unknown.example"}).exitCode, 1);
  EXPECT_EQ(cli_.Run({"site", "a.example", "storage", "maybe"}).exitCode, 2);
  EXPECT_EQ(cli_.Run({"site", "a.example", "camera", "allow"}).exitCode, 2);
  EXPECT_EQ(cli_.Run({"site", "a.example", "storage"}).exitCode, 2);
  EXPECT_FALSE(std::filesystem::exists(SiteFile("a.example")));
}

TEST_F(Cli, RemoveSiteAndClearDelete) {
  ASSERT_EQ(cli_.Run({"site", "one.example", "p2p", "allow"}).exitCode, 0);
  ASSERT_EQ(cli_.Run({"site", "two.example", "p2p", "allow"}).exitCode, 0);
  WriteFileBytes(StoredData("one.example") / "x.sol", "data");
  WriteFileBytes(StoredData("two.example") / "x.sol", "data");

  ASSERT_EQ(cli_.Run({"remove-site", "one.example", "--keep-settings"}).exitCode, 0);
  EXPECT_FALSE(std::filesystem::exists(StoredData("one.example")));
  EXPECT_TRUE(std::filesystem::exists(SiteFile("one.example")));
  ASSERT_EQ(cli_.Run({"remove-site", "one.example"}).exitCode, 0);
  EXPECT_FALSE(std::filesystem::exists(SiteFile("one.example")));
  EXPECT_EQ(Lines(cli_.Run({"sites"}).out).find("one.example"), std::string::npos);
  EXPECT_TRUE(std::filesystem::exists(StoredData("two.example")));

  const auto licence = cli_.folder().path() / "Roaming" / "Brinmor" / "Vantrel Player" /
                       "KPSPrivateData2" / "licence.bin";
  const auto asset =
      cli_.folder().path() / "Roaming" / "Brinmor" / "Vantrel Player" / "AssetCache" / "a.bin";
  WriteFileBytes(licence, "l");
  WriteFileBytes(asset, "a");
  ASSERT_EQ(cli_.Run({"clear"}).exitCode, 0);
  EXPECT_FALSE(std::filesystem::exists(StoredData("two.example")));
  EXPECT_FALSE(std::filesystem::exists(SiteFile("two.example")));
  EXPECT_FALSE(std::filesystem::exists(asset));
  EXPECT_TRUE(std::filesystem::exists(licence)) << "licences only go with --licenses";
  EXPECT_EQ(FilePairs(cli_, cli_.MasterFile())["defaultklimit"], 100) << "globals survive";
  ASSERT_EQ(cli_.Run({"clear", "--licenses"}).exitCode, 0);
  EXPECT_FALSE(std::filesystem::exists(licence));
}

// The list's rules are the trusted-locations logic's table; here one pass through the commands.
TEST_F(Cli, TrustedLocationsAreAddedListedAndRemoved) {
  for (const char* path : {"C:\\dev\\one.vtm", "C:\\dev\\folder", "C:\\dev\\two.vtm"}) {
    ASSERT_EQ(cli_.Run({"trusted", "add", path}).exitCode, 0);
  }
  ASSERT_EQ(cli_.Run({"trusted", "remove", "C:\\dev\\folder"}).exitCode, 0);
  EXPECT_EQ(cli_.Run({"trusted", "remove", "C:\\nowhere"}).exitCode, 1);
  EXPECT_EQ(cli_.Run({"trusted", "add"}).exitCode, 2);
  EXPECT_EQ(Lines(cli_.Run({"trusted"}).out), "C:\\dev\\one.vtm\nC:\\dev\\two.vtm\n");
}

TEST_F(Cli, StringsAndAdminFile) {
  ProcessResult german = cli_.RunBare({"strings", "--lang", "0x0407"});
  ASSERT_EQ(german.exitCode, 0) << german.err;
  std::string lines = Lines(german.out);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), kStringCount);
  EXPECT_EQ(lines.rfind("11000\t", 0), 0u);
  EXPECT_NE(lines.find("\n11001\tAbbrechen\n"), std::string::npos);
  ProcessResult english = cli_.RunBare({"strings", "--lang", "0x0409"});
  EXPECT_NE(Lines(english.out).find("\n12000\tVantrel Player Settings Manager\n"),
            std::string::npos);
  EXPECT_EQ(cli_.RunBare({"strings", "--lang", "german"}).exitCode, 2);

  EXPECT_EQ(cli_.Run({"admin", "get", "AutoUpdateDisable"}).exitCode, 1);
  ASSERT_EQ(cli_.Run({"admin", "set", "AutoUpdateDisable", "1"}).exitCode, 0);
  ASSERT_EQ(cli_.Run({"admin", "set", "SilentAutoUpdateEnable", "0"}).exitCode, 0);
  ASSERT_EQ(cli_.Run({"admin", "set", "AutoUpdateDisable", "0"}).exitCode, 0);
  EXPECT_EQ(Lines(ReadFileBytes(cli_.AdminFile())),
            "AutoUpdateDisable=0\nSilentAutoUpdateEnable=0\n");
  EXPECT_EQ(Lines(cli_.Run({"admin", "get", "SilentAutoUpdateEnable"}).out), "0\n");
  EXPECT_EQ(Lines(cli_.Run({"admin"}).out), "AutoUpdateDisable=0\nSilentAutoUpdateEnable=0\n");
  EXPECT_EQ(cli_.Run({"admin", "get"}).exitCode, 2);
  EXPECT_EQ(cli_.Run({"admin", "remove", "x"}).exitCode, 2);
}

TEST_F(Cli, WinePrefixNamesTheThreeFolders) {
  const std::filesystem::path prefix = cli_.folder().path() / "prefix";
  const std::filesystem::path profile = prefix / "drive_c" / "users" / "player" / "AppData";
  std::filesystem::create_directories(prefix / "drive_c" / "users" / "Public");
  std::filesystem::create_directories(profile / "Roaming");
  std::filesystem::create_directories(profile / "Local");
  WriteFileBytes(prefix / "drive_c" / "windows" / "syswow64" / "Tessalin" / "Vantrel" / "tss.cfg",
                 "EnableLocalAppData=1\n");
  json paths = Json(cli_.RunBare({"--wineprefix", PathToUtf8(prefix), "--json", "paths"}));
  EXPECT_EQ(paths["data-root"], PathToUtf8(profile / "Local" / "Tessaline" / "Vantrel Player"));
  EXPECT_EQ(paths["vx-cache"],
            PathToUtf8(profile / "Roaming" / "Brinmor" / "Vantrel Player" / "VXCache"));
  EXPECT_EQ(paths["admin-file"], PathToUtf8(prefix / "drive_c" / "windows" / "syswow64" /
                                            "Tessalin" / "Vantrel" / "tss.cfg"));
}
