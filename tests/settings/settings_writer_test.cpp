// Writing settings streams and files, checked against bytes built independently of the writer.
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

// Reads a written stream back; what the reader logs on the way is not this file's business.
std::unique_ptr<SettingsTable> ReadBack(const std::string& bytes) {
  testing::internal::CaptureStderr();
  std::unique_ptr<SettingsTable> table = SMSettingsReader(bytes).Parse(nullptr);
  testing::internal::GetCapturedStderr();
  return table;
}

}  // namespace

// The body is 16 bytes plus the object name.
TEST(SettingsWriter, HeaderIsShortBelow63BytesOfBodyAndLongFrom63) {
  const std::pair<size_t, std::string> cases[] = {
      {46, Byte(0) + Byte(0x80 + 62)},
      {47, Byte(0) + Byte(0xBF) + U32(63)},
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
  std::unique_ptr<SettingsTable> readBack = ReadBack(written);
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
  SettingArray paths;
  paths.Append(SettingValue::Boolean("C:\\dev\\movie.swf", true));
  paths.Append(SettingValue::Number("n", 1e300));
  paths.Append(SettingValue::String("s", "text"));
  allTypes.Insert(SettingValue::Array("trustedPaths", paths));
  EXPECT_EQ(SerializeSettings(allTypes, "caf\xC3\xA9.example/settings"),
            ReadFileBytes(fs::path(VP_SETTINGS_TESTDATA) / "golden" / "all-types.sol"));
}

// A folder two levels below what exists takes two writes; one level takes one write (the
// settings manager's tests).
TEST(SettingsWriter, WriteCreatesMissingFolderLevelsOverTwoWritesAndReplacesTheFile) {
  TempFolder temp;
  FakeSystem system;
  auto platform = MakeNativePlatform(system);
  const std::string folder = temp.Utf8(fs::path("a") / "b" / "c");
  const std::string file = folder + kPathSeparator + "settings.sol";
  EXPECT_FALSE(WriteSettingsStream(*platform, folder, file, "x"));
  EXPECT_TRUE(WriteSettingsStream(*platform, folder, file, "first, longer contents"));
  EXPECT_TRUE(WriteSettingsStream(*platform, folder, file, "second"));
  EXPECT_EQ(ReadFileBytes(PathFromUtf8(file)), "second");
}
