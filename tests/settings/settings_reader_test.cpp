// Reading settings streams: what each holds, what is refused, and what is logged.
#include "settings/settings_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/settings_bytes.h"

using namespace settings_bytes;

namespace {

std::string ReadPast(const std::string& function) {
  return "SMSettingsReader: " + function + "() attempted to read beyond end-of-stream.\n";
}
const std::string kUnknownElement =
    "SMSettingsReader: Unexpected data-type encountered when parsing array; IGNORING VALUE.\n";
const std::string kNestedElement =
    "SMSettingsReader: Nested arrays are not supported. They are currently not a use-case; "
    "IGNORING VALUE.\n";

struct ParseOutcome {
  std::unique_ptr<SettingsTable> table;
  std::string objectName;
  std::string diagnostics;
};

ParseOutcome ParseCapturingStderr(const std::string& bytes) {
  ParseOutcome outcome;
  testing::internal::CaptureStderr();
  SMSettingsReader reader(bytes);
  outcome.table = reader.Parse(&outcome.objectName);
  outcome.diagnostics = testing::internal::GetCapturedStderr();
  return outcome;
}

std::string Describe(const SettingValue& value) {
  const std::string text = value.name() + ":" + std::to_string(value.type()) + "=";
  if (value.type() == kSettingNumber) return text + std::to_string(value.number());
  if (value.type() == kSettingBoolean) return text + (value.boolean() ? "true" : "false");
  if (value.type() == kSettingString) return text + "'" + value.text() + "'";
  if (value.type() != kSettingArray) return text + "?";
  std::string elements;
  for (const SettingValue& element : value.array()) elements += Describe(element) + ";";
  return text + "[" + elements + "]";
}

// The table's values in iteration order, one text each.
std::vector<std::string> Contents(const SettingsTable& table) {
  std::vector<std::string> described;
  table.ForEach([&](const SettingValue& value) { described.push_back(Describe(value)); });
  return described;
}

}  // namespace

TEST(SettingsReader, PStringIsCutAtZeroAndAnOverlongOneIsEmpty) {
  const std::string bytes = PString(std::string("ab\0cd", 5)) + U16(9) + "short";
  SMSettingsReader reader(bytes);
  EXPECT_EQ(reader.ReadAndCopyPStringAsSimpleString(), "ab");
  EXPECT_EQ(reader.position(), 7u);
  testing::internal::CaptureStderr();
  EXPECT_EQ(reader.ReadAndCopyPStringAsSimpleString(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), ReadPast("ReadAndCopyPStringAsSimpleString"));
  EXPECT_EQ(reader.position(), 9u);  // the count was read, the text was not
}

// The format files under testdata/must-fail cover the other ways a stream is refused.
TEST(SettingsReader, StreamsAndWhatTheyHoldOrThatTheyAreRefused) {
  const std::string good = Body("s", BooleanPair("a", true));
  struct Case {
    const char* what;
    std::string bytes;
    std::vector<std::string> contents;
    std::string diagnostics = "";
    bool refused = false;
  };
  const Case cases[] = {
      {"header, magic, version, name and reserved bytes only", Stream(Body("settings", "")), {}},
      {"version 2 has no reserved bytes after the version",
       Stream("TCSO" + U16(2) + PString("v2") + U32(0) + BooleanPair("b", true)),
       {"b:1=true"}},
      {"version 3 likewise",
       Stream("TCSO" + U16(3) + PString("v3") + U32(0) + NumberPair("n", 7)),
       {"n:0=7.000000"}},
      {"the declared length may be shorter than the stream; parsing runs to its end",
       Byte(0) + Byte(0x81) + Body("s", NumberPair("n", 1) + StringPair("t", "x")),
       {"t:2='x'", "n:0=1.000000"}},
      {"a long header",
       Byte(0) + Byte(0xBF) + U32(10) + Body("s", BooleanPair("b", false)),
       {"b:1=false"}},
      {"any non-zero boolean byte is true",
       Stream(Body("s", PString("b") + Byte(1) + Byte(0x40) + Byte(0))),
       {"b:1=true"}},
      {"a string is cut at a zero byte",
       Stream(Body("s", StringPair("t", std::string("be\0fore", 7)))),
       {"t:2='be'"}},
      {"the same name twice: the last value, at the place of the first",
       Stream(Body("s", NumberPair("a", 1) + NumberPair("q", 2) + NumberPair("a", 3))),
       {"q:0=2.000000", "a:0=3.000000"}},
      {"the last pair without its end byte still counts; the short read is logged",
       Stream(Body("s", PString("b") + Byte(1) + Byte(1))),
       {"b:1=true"},
       ReadPast("ReadU8")},
      {"a number cut off after its type byte reads as 0; both short reads are logged",
       Stream(Body("s", PString("n") + Byte(0))),
       {"n:0=0.000000"},
       ReadPast("ReadDouble") + ReadPast("ReadU8")},
      {"an unknown pair type is reported and nothing is stored; its payload is not skipped",
       Stream(Body("s", PString("x") + Byte(5) + Byte(0) + BooleanPair("y", true))),
       {"y:1=true"},
       "SMSettingsReader: Unexpected data-type encountered when parsing settings; IGNORING "
       "VALUE.\n"},
      {"array elements of every type, in file order",
       Stream(Body(
           "s", ArrayPair("list", Element("z", 2, PString("last")) + Element("a", 0, Double(0.5)) +
                                      Element("m", 1, Byte(1))))),
       {"list:3=[z:2='last';a:0=0.500000;m:1=true;]"}},
      {"an unknown element after a number or boolean stays, after a string it is dropped; a "
       "nested array is dropped and its payload read as the next element",
       Stream(Body("s", ArrayPair("list", Element("n", 0, Double(1)) + Element("u1", 6, "") +
                                              Element("u2", 7, "") + Element("s", 2, PString("t")) +
                                              Element("u3", 6, "") + Element("b", 1, Byte(0)) +
                                              Element("x", 3, "") + Element("u4", 8, "")))),
       {"list:3=[n:0=1.000000;u1:6=?;u2:7=?;s:2='t';b:1=false;u4:8=?;]"},
       kUnknownElement + kUnknownElement + kUnknownElement + kNestedElement + kUnknownElement},
      {"an unknown element first in its array is dropped",
       Stream(Body("s", ArrayPair("list", Element("u", 6, "") + Element("n", 0, Double(2))))),
       {"list:3=[n:0=2.000000;]"},
       kUnknownElement},
      {"tag type 1 is refused", Byte(0x00) + Byte(0x40 + 10) + good, {}, "", true},
      {"a declared length one past the end is refused",
       Byte(0) + Byte(static_cast<uint8_t>(0x80 + good.size() + 1)) + good,
       {},
       "",
       true},
      {"a short read does not advance: the rest of a cut number is taken as the end byte",
       Stream(Body("s", PString("n") + Byte(0) + "\x01\x02")),
       {},
       ReadPast("ReadDouble"),
       true},
  };
  for (const Case& testCase : cases) {
    SCOPED_TRACE(testCase.what);
    ParseOutcome outcome = ParseCapturingStderr(testCase.bytes);
    EXPECT_EQ(outcome.diagnostics, testCase.diagnostics);
    if (testCase.refused) {
      EXPECT_EQ(outcome.table, nullptr);
    } else {
      ASSERT_NE(outcome.table, nullptr);
      EXPECT_EQ(Contents(*outcome.table), testCase.contents);
    }
  }
}
