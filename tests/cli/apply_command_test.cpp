// apply and export, run as a separate process against a throwaway profile.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli_harness.h"

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

class Apply : public ::testing::Test {
 protected:
  ProcessResult ApplyPolicy(const std::string& policy, std::vector<std::string> options = {}) {
    WriteFileBytes(policyFolder_.path() / "policy.json", policy);
    std::vector<std::string> arguments = {"apply", policyFolder_.Utf8("policy.json"), "--json"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return cli_.Run(arguments);
  }
  void Run(const std::vector<std::string>& arguments) {
    ProcessResult result = cli_.Run(arguments);
    ASSERT_EQ(result.exitCode, 0) << arguments[0] << ": " << result.err;
  }
  fs::path StoredData(const std::string& site) { return cli_.StoredData(site) / "a.sol"; }
  CliHarness cli_;
  TempFolder policyFolder_;  // outside the profile, so that snapshots of it leave the policy out
};

const char* const kPolicy = R"({
  "globals": {"defaultklimit": 0, "disallowP2PUplink": true, "autoUpdateInterval": 14},
  "sites": {"ads.example": {"storage": "block", "p2p": "ask"},
            "meet.example": {"cammic": {"https": "allow", "other": "block"}}},
  "removeSites": ["old.example", "gone.example", "never.example"],
  "trusted": {"present": ["C:\\dev\\game.vtm"], "absent": ["C:\\old"]},
  "admin": {"set": {"AutoUpdateDisable": "1"}, "remove": ["SilentAutoUpdateEnable"]}
})";

}  // namespace

TEST_F(Apply, ChangesWhatDiffersOnceAndChecksWithoutWriting) {
  Run({"site", "ads.example", "storage", "allow"});
  Run({"site", "old.example", "p2p", "allow"});
  Run({"trusted", "add", "C:\\old"});
  Run({"admin", "set", "SilentAutoUpdateEnable", "1"});
  WriteFileBytes(StoredData("ads.example"), "ad data");
  WriteFileBytes(StoredData("old.example"), "old data");
  fs::create_directories(cli_.SettingsFolder() / "#gone.example");

  ProcessResult first = ApplyPolicy(kPolicy);
  ASSERT_EQ(first.exitCode, 0) << first.err;
  const struct {
    const char* what;
    json from;
    json to;
  } expected[] = {
      {"global defaultklimit", 100, 0},
      {"global disallowP2PUplink", false, true},
      {"site ads.example storage", "allow", "block"},
      {"site meet.example cammic https", nullptr, "allow"},
      {"site meet.example cammic other", nullptr, "block"},
      {"site old.example", "known", "removed"},
      {"site gone.example", "folders of an unknown site", "removed"},
      {"trusted C:\\dev\\game.vtm", "absent", "present"},
      {"trusted C:\\old", "present", "absent"},
      {"tss.cfg AutoUpdateDisable", nullptr, "1"},
      {"tss.cfg SilentAutoUpdateEnable", "1", nullptr},
  };
  json report = json::parse(first.out);
  EXPECT_EQ(report["changed"], true);
  ASSERT_EQ(report["changes"].size(), std::size(expected)) << report.dump(1);
  for (size_t index = 0; index < std::size(expected); ++index) {
    EXPECT_EQ(report["changes"][index], json({{"what", expected[index].what},
                                              {"from", expected[index].from},
                                              {"to", expected[index].to}}));
  }
  // Blocking storage took the site's data and kept its settings; removals took everything.
  EXPECT_FALSE(fs::exists(StoredData("ads.example")));
  EXPECT_FALSE(fs::exists(StoredData("old.example")));
  EXPECT_FALSE(fs::exists(cli_.SettingsFolder() / "#gone.example"));
  EXPECT_EQ(Lines(cli_.Run({"sites"}).out),
            "ads.example\tblock\task\task\task\t0 bytes\n"
            "meet.example\task\tallow\tblock\task\t0 bytes\n");
  EXPECT_EQ(Lines(cli_.Run({"trusted"}).out), "C:\\dev\\game.vtm\n");
  EXPECT_EQ(Lines(cli_.Run({"admin"}).out), "AutoUpdateDisable=1\n");

  // Everything holds: no file is written again, not even with the same bytes.
  const auto converged = cli_.Snapshot();
  ProcessResult second = ApplyPolicy(kPolicy);
  EXPECT_EQ(second.exitCode, 0) << second.err;
  EXPECT_EQ(json::parse(second.out), json({{"changed", false}, {"changes", json::array()}}));
  EXPECT_EQ(cli_.Snapshot(), converged);

  Run({"set", "defaultklimit", "5"});
  WriteFileBytes(StoredData("ads.example"), "new ad data");
  Run({"site", "ads.example", "storage", "ask"});
  const auto drifted = cli_.Snapshot();
  ProcessResult checked = ApplyPolicy(kPolicy, {"--check"});
  EXPECT_EQ(checked.exitCode, 0) << checked.err;
  EXPECT_EQ(json::parse(checked.out)["changes"].size(), 2u) << checked.out;
  EXPECT_EQ(cli_.Snapshot(), drifted);
}

TEST_F(Apply, RefusesAnInvalidPolicyNamingThePlaceAndWritesNothing) {
  Run({"set", "defaultklimit", "7"});
  const auto before = cli_.Snapshot();
  const struct {
    const char* policy;
    const char* pointer;
  } rows[] = {
      {R"({"sites": {"a.example": {"storage": "bloc"}}})", "/sites/a.example/storage"},
      {R"({"sites": {"a/b~": {"camera": "allow"}}})", "/sites/a~1b~0/camera"},
      {R"({"global": {}})", "/global"},
      {R"({"globals": {"trustedPaths": []}})", "/globals/trustedPaths"},
      {R"({"globals": {"defaultklimit": "0"}})", "/globals/defaultklimit"},
      {R"({"globals": {"defaultklimit": 1e400}})", ""},
      {R"({"removeSites": ["a.example"], "sites": {"a.example": {}}})", "/removeSites/0"},
      {R"({"trusted": {"present": ["C:\\a"], "absent": ["C:\\a"]}})", "/trusted/absent/0"},
      {R"({"admin": {"set": {"Note": "x\nAutoUpdateDisable=0"}}})", "/admin/set/Note"},
      {R"({"sites": {"___MASTER_DOMAIN": {"p2p": "allow"}}})", "/sites/___MASTER_DOMAIN"},
      {R"({"removeSites": ["a.example", ""]})", "/removeSites/1"},
  };
  for (const auto& row : rows) {
    ProcessResult result = ApplyPolicy(row.policy);
    EXPECT_EQ(result.exitCode, 2) << row.policy;
    EXPECT_NE(result.err.find(std::string("at \"") + row.pointer + "\": expected "),
              std::string::npos)
        << row.policy << "\n"
        << result.err;
  }
  EXPECT_EQ(cli_.Snapshot(), before);
}

TEST_F(Apply, StopsAtTheFirstEntryThatCannotBeWrittenKeepingThoseBefore) {
  // A file where the site's settings folder would go.
  WriteFileBytes(cli_.SettingsFolder() / "#b.example", "");
  ProcessResult result = ApplyPolicy(R"({"globals": {"defaultklimit": 0},
    "sites": {"b.example": {"p2p": "allow"}}, "trusted": {"present": ["C:\\x"]}})");
  EXPECT_EQ(result.exitCode, 1);
  json report = json::parse(result.out);
  EXPECT_EQ(report["changes"].size(), 1u);
  EXPECT_EQ(report["failed"]["what"], "site b.example p2p");
  EXPECT_NE(result.err.find("site b.example p2p"), std::string::npos) << result.err;
  EXPECT_NE(Lines(cli_.Run({"show"}).out).find("\ndefaultklimit\tnumber\t0\n"), std::string::npos);
  EXPECT_EQ(cli_.Run({"trusted"}).out, "");
}

TEST_F(Apply, AnExportAppliedElsewhereGivesTheSameState) {
  Run({"set", "autoUpdateInterval", "3"});
  Run({"site", "a.example", "storage", "block"});
  Run({"site", "b.example", "cammic", "allow"});
  Run({"trusted", "add", "C:\\dev"});
  Run({"admin", "set", "AutoUpdateDisable", "1"});
  ProcessResult exported = cli_.Run({"export"});
  ASSERT_EQ(exported.exitCode, 0) << exported.err;

  CliHarness other;
  WriteFileBytes(other.folder().path() / "policy.json", exported.out);
  ProcessResult applied = other.Run({"apply", other.folder().Utf8("policy.json")});
  ASSERT_EQ(applied.exitCode, 0) << applied.err;
  EXPECT_EQ(json::parse(other.Run({"export"}).out), json::parse(exported.out));
}
