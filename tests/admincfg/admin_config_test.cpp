#include "admincfg/admin_config.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "input_properties.h"
#include "platform/file_io.h"
#include "support/temp_folder.h"

using namespace std::string_literals;

namespace {

using Entries = std::vector<std::pair<std::string, std::string>>;

Entries Parse(const std::string& bytes, int* encoding = nullptr) {
  SMAdminConfig config("");
  config.LoadFromBytes(bytes);
  if (encoding != nullptr) *encoding = config.encoding();
  return config.entries();
}

}  // namespace

TEST(AdminConfig, EncodingDecidesWhetherTheFileIsRead) {
  struct Case {
    std::string bytes;
    int encoding;
    Entries entries;
  };
  const Case cases[] = {
      {"z=1\n", SMAdminConfig::kPlain, {{"z", "1"}}},
      {"\xEF\xBB\xBFz=1\n", SMAdminConfig::kUtf8WithMark, {{"z", "1"}}},
      {"\xFF\xFEz\0=\0y\0"s, SMAdminConfig::kUtf16Ignored, {}},
      {"\xFE\xFF\0z\0=\0y"s, SMAdminConfig::kUtf16Ignored, {}},
      {"a=1", SMAdminConfig::kUnreadable, {}},  // under four bytes, whatever it holds
      // Only a mark at the very start counts.
      {"x\xEF\xBB\xBF=1", SMAdminConfig::kPlain, {{"x", "1"}}},
  };
  for (const Case& c : cases) {
    int encoding = 99;
    EXPECT_EQ(Parse(c.bytes, &encoding), c.entries) << c.bytes;
    EXPECT_EQ(encoding, c.encoding) << c.bytes;
  }
}

TEST(AdminConfig, LinesSplitTrimAndReplace) {
  struct Case {
    const char* name;
    std::string bytes;
    Entries entries;
  };
  const std::string longValue(5000, 'v');
  const Case cases[] = {
      // After a CR the next byte is taken as its LF, whatever it is.
      {"CR eats the next byte", "a=1\rxb=2\r-c=3", {{"a", "1"}, {"b", "2"}, {"c", "3"}}},
      {"CR eats a LF, the next LF ends an empty line", "a=1\r\n\nb=2", {{"a", "1"}, {"b", "2"}}},
      {"last line without end", "a=1\nb=2", {{"a", "1"}, {"b", "2"}}},
      {"control bytes trimmed", "\x01k\x1f=\x7fv\x02\n", {{"k", "\x7fv"}}},
      {"non-ASCII at the ends trimmed",
       "k=caf\xC3\xA9\n\xC3\xA9k2=v\n",
       {{"k", "caf"}, {"k2", "v"}}},
      {"non-ASCII inside kept", "k=a\xC3\xA9z\n", {{"k", "a\xC3\xA9z"}}},
      {"first equals splits", "k=a=b\n", {{"k", "a=b"}}},
      {"no equals ignored", "just a remark\nk=v\n", {{"k", "v"}}},
      {"empty key ignored", "=v\n  =v\nk=v\n", {{"k", "v"}}},
      {"empty value ignored", "k=\nk2=  \nk3=v\n", {{"k3", "v"}}},
      {"last duplicate wins and moves", "a=1\nb=2\na=3\n", {{"b", "2"}, {"a", "3"}}},
      {"capitals make another key", "Key=1\nkey=2\n", {{"Key", "1"}, {"key", "2"}}},
      {"line of any length", "k=" + longValue + "\n", {{"k", longValue}}},
      {"comment-looking line with equals is an entry", "#x=1\n", {{"#x", "1"}}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Parse(c.bytes), c.entries) << c.name;
  }
}

TEST(AdminConfig, WriteAndReloadRoundTripsThroughTheFile) {
  TempFolder folder;
  std::string path = folder.Utf8("tss.cfg");
  WriteFileBytes(folder.path() / "tss.cfg", "\xEF\xBB\xBFZeta=9\r\nAutoUpdateDisable=0\r\n");
  SMAdminConfig config(path);
  config.SetValue("AutoUpdateDisable", "1");       // replaced in place
  config.SetValue("SilentAutoUpdateEnable", "0");  // added at the end
  std::FILE* file = OpenFileUtf8(path, "w");
  ASSERT_NE(file, nullptr);
  config.Write(file);
  ASSERT_EQ(std::fclose(file), 0);
  // Without the mark; the CR LF of the Windows file is the Windows players test's.
  std::string written = ReadFileBytes(folder.path() / "tss.cfg");
  std::erase(written, '\r');
  EXPECT_EQ(written, "Zeta=9\nAutoUpdateDisable=1\nSilentAutoUpdateEnable=0\n");
  ASSERT_TRUE(config.Load());
  EXPECT_FALSE(SMAdminConfig(folder.Utf8("missing.cfg")).Load());
  EXPECT_EQ(config.entries(),
            (Entries{{"Zeta", "9"}, {"AutoUpdateDisable", "1"}, {"SilentAutoUpdateEnable", "0"}}));
}

// The fuzzer's seed corpus through the fuzzer's own property, on every platform the tests run on.
TEST(AdminConfigCorpus, EveryFileReadsBackTheSame) {
  int replayed = 0;
  for (const auto& entry : std::filesystem::directory_iterator(VP_ADMINCFG_CORPUS)) {
    std::string whyNot;
    EXPECT_TRUE(AdminConfigReadBackHolds(ReadFileBytes(entry.path()), &whyNot))
        << PathToUtf8(entry.path()) << ": " << whyNot;
    ++replayed;
  }
  EXPECT_GE(replayed, 6);
}
