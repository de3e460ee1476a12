#include "settings/settings_writer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "settings/settings_reader.h"
#include "support/fake_system.h"
#include "support/native_platform.h"
#include "support/settings_bytes.h"
#include "support/temp_folder.h"

using namespace settings_bytes;
namespace fs = std::filesystem;

namespace {

fs::path TestData(const std::string& relative) {
  return fs::path(VP_SETTINGS_TESTDATA) / relative;
}

SettingArray Elements(std::vector<SettingValue> values) {
  SettingArray elements;
  for (SettingValue& value : values) elements.Append(std::move(value));
  return elements;
}

std::unique_ptr<SettingsTable> ParseQuietly(const std::string& bytes, std::string* objectName) {
  testing::internal::CaptureStderr();
  SMSettingsReader reader(bytes);
  std::unique_ptr<SettingsTable> table = reader.Parse(objectName);
  testing::internal::GetCapturedStderr();
  return table;
}

}  // namespace

// Ascending buckets with the newest name of a bucket first are pinned by the manager's first-run
// file; here the edges: the empty name, a byte above 0x7F, a replaced value, names differing in
// case only.
TEST(SettingsTable, IterationFollowsBucketsWithTheNewestNameOfABucketFirst) {
  SettingsTable table;
  for (const char* name : {"\xFF", "a", "", "A", "b"}) table.Insert(SettingValue::Number(name, 1));
  table.Insert(SettingValue::String("a", "new"));
  EXPECT_EQ(table.Names(), (std::vector<std::string>{"", "A", "a", "b", "\xFF"}));
  EXPECT_EQ(table.Find("a")->text(), "new");
  EXPECT_EQ(table.Find("A")->number(), 1);
}

TEST(SettingsTable, ValuesAreCopiedDeeply) {
  SettingValue original = SettingValue::Array("list", Elements({SettingValue::Boolean("x", true)}));
  SettingsTable table;
  table.Insert(original);
  original.array()[0] = SettingValue::Boolean("x", false);
  SettingValue copy = *table.Find("list");
  copy.array().RemoveAt(0);
  ASSERT_EQ(table.Find("list")->array().size(), 1u);
  EXPECT_TRUE(table.Find("list")->array()[0].boolean());
}

// The body is 16 bytes plus the object name; the empty master file ("settings") is 26 bytes.
TEST(SettingsWriter, HeaderIsShortBelow63BytesOfBodyAndLongFrom63) {
  const std::pair<size_t, std::string> cases[] = {
      {8, Byte(0) + Byte(0x80 + 24)},
      {46, Byte(0) + Byte(0x80 + 62)},
      {47, Byte(0) + Byte(0xBF) + U32(63)},
      {48, Byte(0) + Byte(0xBF) + U32(64)},
  };
  for (const auto& [nameLength, header] : cases) {
    std::string name(nameLength, 'n');
    EXPECT_EQ(SerializeSettings(SettingsTable(), name), header + Body(name, "")) << nameLength;
  }
}

TEST(SettingsWriter, TextsLongerThan65535BytesAreCut) {
  SettingsTable table;
  std::string longText(70000, 't');
  std::string longName(65536, 'k');
  table.Insert(SettingValue::String("s", longText));
  table.Insert(SettingValue::Boolean(longName, true));
  std::string written = SerializeSettings(table, "settings");
  EXPECT_EQ(written.size(), 6u + 24 + (2 + 1 + 1 + 2 + 65535 + 1) + (2 + 65535 + 1 + 1 + 1));
  std::unique_ptr<SettingsTable> readBack = ParseQuietly(written, nullptr);
  ASSERT_NE(readBack, nullptr);
  EXPECT_EQ(readBack->Find("s")->text(), longText.substr(0, 65535));
  EXPECT_TRUE(readBack->Find(longName.substr(0, 65535))->boolean());
}

// The bytes of the file were written independently of this writer; the reader's side of every
// type is in the reader's table, and the corpus replay reads this file back.
TEST(SettingsWriter, EveryTypeIsWrittenByteForByteAsInTheGoldenFile) {
  SettingsTable allTypes;
  allTypes.Insert(SettingValue::Number("a", -1.5));
  allTypes.Insert(SettingValue::Boolean("q", true));
  allTypes.Insert(SettingValue::String("c",
                                       "gr\xC3\xBC\xC3\x9F"
                                       "e"));
  allTypes.Insert(SettingValue::Array(
      "trustedPaths",
      Elements({SettingValue::Boolean("C:\\dev\\movie.swf", true), SettingValue::Number("n", 1e300),
                SettingValue::String("s", "text")})));
  EXPECT_EQ(SerializeSettings(allTypes, "caf\xC3\xA9.example/settings"),
            ReadFileBytes(TestData("golden/all-types.sol")));
}

TEST(SettingsWriter, UnknownElementsRoundTripWithNameAndTypeOnly) {
  std::string stream =
      Stream(Body("s", ArrayPair("l", Element("n", 0, Double(3)) + Element("u", 6, "") +
                                          Element("b", 1, Byte(1)))));
  std::unique_ptr<SettingsTable> table = ParseQuietly(stream, nullptr);
  ASSERT_NE(table, nullptr);
  ASSERT_EQ(table->Find("l")->array().size(), 3u);
  EXPECT_EQ(SerializeSettings(*table, "s"), stream);
}

TEST(SettingsWriter, WriteReplacesTheFileAndCreatesOneMissingFolderLevel) {
  TempFolder temp;
  FakeSystem system;
  auto platform = MakeNativePlatform(system);
  const std::string folder = temp.Utf8("missing");
  const std::string file = folder + kPathSeparator + "settings.sol";
  EXPECT_TRUE(WriteSettingsStream(*platform, folder, file, "first, longer contents"));
  EXPECT_TRUE(WriteSettingsStream(*platform, folder, file, "second"));
  EXPECT_EQ(ReadFileBytes(PathFromUtf8(file)), "second");

  // A folder two levels below what exists takes two writes: each creates one more level.
  const std::string deepFolder = temp.Utf8(fs::path("a") / "b" / "c");
  const std::string deepFile = deepFolder + kPathSeparator + "settings.sol";
  EXPECT_FALSE(WriteSettingsStream(*platform, deepFolder, deepFile, "x"));
  EXPECT_TRUE(WriteSettingsStream(*platform, deepFolder, deepFile, "x"));
  EXPECT_EQ(ReadFileBytes(PathFromUtf8(deepFile)), "x");
}
