// dump and encode, run as a separate process on files made here byte by byte.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "cli_harness.h"
#include "input_properties.h"
#include "support/settings_bytes.h"

namespace {

using nlohmann::json;

using namespace settings_bytes;

// A settings.sol stream put together by hand, pairs in the order given.
std::string Stream(const std::string& objectName, const std::string& pairs) {
  return settings_bytes::Stream(Body(objectName, pairs));
}

// Names whose buckets (byte sums modulo 16) are 1, 2, 3, 4: the table keeps this order.
const std::string kPairs = PString("a") + '\0' + Double(1.5) + '\0' +                        //
                           PString("b") + '\1' + '\1' + '\0' +                               //
                           PString("c") + '\2' + PString("h\xC3\xA9") + '\0' +               //
                           PString("d") + '\3' +                                             //
                           PString("x") + '\0' + Double(100) + PString("y") + '\1' + '\0' +  //
                           PString("z") + '\2' + PString("s") + U16(0) + '\x09' + '\0';

class CliFiles : public ::testing::Test {
 protected:
  std::string Write(const std::string& name, const std::string& bytes) {
    WriteFileBytes(cli_.folder().path() / name, bytes);
    return cli_.folder().Utf8(name);
  }
  CliHarness cli_;
};

// A settings document holding one pair with these members.
std::string OnePair(const std::string& members) {
  return R"({"name": "s", "pairs": [{)" + members + "}]}";
}

}  // namespace

TEST_F(CliFiles, DumpShowsPairsInFileOrder) {
  ProcessResult text =
      cli_.RunBare({"dump", Write("site.sol", Stream("example.com/settings", kPairs))});
  EXPECT_EQ(text.exitCode, 0) << text.err;
  EXPECT_EQ(Lines(text.out),
            "example.com/settings\n"
            "a\tnumber\t1.5\n"
            "b\tboolean\ttrue\n"
            "c\tstring\th\xC3\xA9\n"
            "d\tarray\t[{\"name\":\"x\",\"type\":\"number\",\"value\":100},"
            "{\"name\":\"y\",\"type\":\"boolean\",\"value\":false},"
            "{\"name\":\"z\",\"type\":\"string\",\"value\":\"s\"}]\n");
}

TEST_F(CliFiles, DumpThenEncodeGivesBackTheSameBytes) {
  const std::string kept = PString("e") + '\3' + PString("x") + '\0' + Double(1) + PString("u") +
                           '\x07' + U16(0) + '\x09' + '\0';
  struct Case {
    const char* what;
    std::string bytes;
    std::string diagnostics;
  };
  const Case cases[] = {
      {"every type", Stream("example.com/settings", kPairs)},
      {"empty master", Stream("settings", "")},
      {"special numbers",
       Stream("settings", PString("a") + '\0' + Double(-0.0) + '\0' + PString("b") + '\0' +
                              Double(std::bit_cast<double>(0x7FF8000000000000ULL)) + '\0' +
                              PString("c") + '\0' + Double(-INFINITY) + '\0' + PString("d") + '\0' +
                              Double(0.1) + '\0')},
      {"kept element of unknown type", Stream("settings", kept),
       "SMSettingsReader: Unexpected data-type encountered when parsing array; IGNORING "
       "VALUE.\n"},
  };
  for (const Case& c : cases) {
    std::string file = Write("in.sol", c.bytes);
    ProcessResult dumped = cli_.RunBare({"--json", "dump", file});
    ASSERT_EQ(dumped.exitCode, 0) << c.what << ": " << dumped.err;
    EXPECT_EQ(Lines(dumped.err), c.diagnostics) << c.what;
    ProcessResult encoded = cli_.RunBare({"encode", Write("in.json", dumped.out)});
    EXPECT_EQ(encoded.exitCode, 0) << c.what << ": " << encoded.err;
    EXPECT_EQ(encoded.out, c.bytes) << c.what;
  }
}

TEST_F(CliFiles, BadInputFailsWithAMessageAndNoOutput) {
  struct Case {
    std::vector<std::string> arguments;
    std::string input;
    int exitCode;
    std::string errContains;
  };
  std::string missing = cli_.folder().Utf8("missing.sol");
  std::string badEnd = Write("bad.sol", Stream("settings", PString("a") + '\1' + '\1' + '\x05'));
  const Case cases[] = {
      {{"dump", missing}, "", 1, missing},
      {{"dump", badEnd}, "", 1, badEnd},
      {{"encode"}, "{\"name\": ", 1, "byte"},
      {{"encode"}, "[1, 2]", 1, "/"},
      {{"encode"}, OnePair(R"("name": "a", "type": "number", "value": "x")"), 1, "/pairs/0/value"},
      {{"encode"}, OnePair(R"("name": "a", "type": "colour", "value": 1)"), 1, "/pairs/0/type"},
      {{"encode"}, OnePair(R"("name": 3, "type": "boolean", "value": true)"), 1, "/pairs/0/name"},
      {{"encode"},
       OnePair(
           R"("name": "a", "type": "array", "value": [{"name": "b", "type": "array", "value": []}])"),
       1,
       "/pairs/0/value/0/type"},
      {{"dump"}, "", 2, "FILE"},
#ifndef _WIN32
      // Off Windows there are no default folders (on Windows they are the real profile's).
      {{"set", "x", "1"}, "", 2, "--appdata"},
#endif
  };
  for (const Case& c : cases) {
    ProcessResult result = cli_.RunBare(c.arguments, c.input);
    EXPECT_EQ(result.exitCode, c.exitCode) << c.arguments[0] << " " << c.input;
    EXPECT_EQ(result.out, "") << c.arguments[0] << " " << c.input;
    EXPECT_NE(result.err.find(c.errContains), std::string::npos) << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
  }
}

// The JSON fuzzer's seed corpus through the fuzzer's own property, on every platform.
TEST(SettingsJsonCorpus, EveryFileReadsBackTheSame) {
  int replayed = 0;
  for (const auto& entry : std::filesystem::directory_iterator(VP_CLI_CORPUS)) {
    std::string whyNot;
    EXPECT_TRUE(SettingsJsonReadBackHolds(ReadFileBytes(entry.path()), &whyNot))
        << PathToUtf8(entry.path()) << ": " << whyNot;
    ++replayed;
  }
  EXPECT_GE(replayed, 4);
}
