#include "l10n/string_table.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

#include "l10n/string_data.h"
#include "support/fake_system.h"

namespace {

// Every lead byte is followed by as many continuation bytes as it announces: the program
// converts every text with MultiByteToWideChar, which would turn a broken sequence (as a faulty
// escape in the generated table would leave) into replacement characters.
bool IsValidUtf8(const char* text) {
  for (const auto* bytes = reinterpret_cast<const unsigned char*>(text); *bytes != 0;) {
    const unsigned lead = *bytes++;
    int ones = 0;  // leading one bits: 0 for ASCII, else the length of the sequence
    while (ones < 8 && (lead & (0x80u >> ones)) != 0) ++ones;
    if (ones == 1 || ones > 4) return false;
    for (int index = 1; index < ones; ++index) {
      if ((*bytes++ & 0xC0) != 0x80) return false;
    }
  }
  return true;
}

// Every position of the index is reachable, and no id between two neighbours matches: a search
// that is off by one, stops early or reads past the ends fails here for some position.
TEST(StringTableTest, FindsEveryIdInEveryLanguageAndNothingBetweenThem) {
  std::set<uint32_t> ids;
  for (int position = 0; position < kStringCount; ++position) ids.insert(kStringIndex[position].id);
  ASSERT_EQ(ids.size(), static_cast<size_t>(kStringCount)) << "ids must be distinct";

  for (int language = 0; language < kStringLanguageCount; ++language) {
    SMFixedLanguageStringTable table(language);
    for (uint32_t id : ids) {
      const char* text = table.GetString(static_cast<TextId>(id));
      ASSERT_NE(text, nullptr) << "id " << id << " language " << language;
      EXPECT_GT(std::strlen(text), 0u) << "id " << id << " language " << language;
      EXPECT_TRUE(IsValidUtf8(text)) << "id " << id << " language " << language;
      for (uint32_t neighbour : {id - 1, id + 1}) {
        if (ids.count(neighbour) == 0) {
          EXPECT_EQ(table.GetString(static_cast<TextId>(neighbour)), nullptr) << neighbour;
        }
      }
    }
  }
}

// The column of a language: KeepsTheFirstLanguageForTheLifeOfTheTable.
TEST(StringTableTest, AColumnOutsideTheMatrixReadsEnglishRatherThanMemoryPastIt) {
  EXPECT_STREQ(SMFixedLanguageStringTable(36).GetString(TextId::kDeauthorize), "Deauthorize");
  EXPECT_STREQ(SMFixedLanguageStringTable(-1).GetString(TextId::kDeauthorize), "Deauthorize");
}

// The deauthorizing button and Cancel sit in the same confirmation; a button that starts with
// the word of Cancel reads as "cancel this computer".
TEST(StringTableTest, DeauthorizeButtonNeverBeginsWithTheWordOfCancel) {
  for (int language = 0; language < kStringLanguageCount; ++language) {
    SMFixedLanguageStringTable table(language);
    std::string cancel = table.GetString(TextId::kCancel);
    std::string deauthorize = table.GetString(TextId::kDeauthorizeComputer);
    EXPECT_NE(deauthorize.compare(0, cancel.size(), cancel), 0)
        << "language " << language << ": " << deauthorize;
  }
}

TEST(StringTableTest, ChoosesTheColumnFromTheInterfaceLanguage) {
  struct Case {
    uint16_t languageId;
    int column;
  };
  // English: only the United Kingdom has its own column. Chinese: Taiwan, Hong Kong and Macao
  // traditional; PRC, Singapore and others simplified. Portuguese: Brazil, then every other
  // country. Croatian, Serbian and Bosnian share a primary id; only Serbian Latin has its own
  // column. Other languages: any sub-language; without a column of their own, English.
  const Case cases[] = {
      {0x0409, 0},  {0x0809, 22}, {0x0C09, 0},  {0x0009, 0},  {0x0404, 15}, {0x0804, 14},
      {0x0C04, 15}, {0x1004, 14}, {0x1404, 15}, {0x7C04, 14}, {0x0416, 10}, {0x0816, 17},
      {0x0016, 17}, {0x041A, 29}, {0x081A, 35}, {0x241A, 35}, {0x0C1A, 29}, {0x141A, 29},
      {0x0401, 23}, {0x0C01, 23}, {0x0407, 2},  {0x0807, 2},  {0x040D, 24}, {0x0439, 0},
      {0x0000, 0},  {0x03FF, 0},  {0xFFFF, 0},
  };
  for (const Case& expected : cases) {
    EXPECT_EQ(StringTableLanguageFor(expected.languageId), expected.column)
        << std::hex << expected.languageId;
  }
}

TEST(StringTableTest, KeepsTheFirstLanguageForTheLifeOfTheTable) {
  FakeSystem system;
  system.uiLanguages = {0x0809, 0x0407, 0x0401};
  SMUserLanguageStringTable table(system);

  EXPECT_EQ(table.GetString(static_cast<TextId>(10999)), nullptr);
  EXPECT_EQ(system.uiLanguageQueries, 0) << "an unknown id must not ask for the language";

  EXPECT_STREQ(table.GetString(TextId::kDeauthorize), "Deauthorise");
  EXPECT_EQ(table.GetLanguageIndex(), 22);
  EXPECT_STREQ(table.GetString(TextId::kSizeKilobytes), "%llu KB");
  EXPECT_EQ(system.uiLanguageQueries, 1);
}

TEST(StringTableTest, RightToLeftForArabicAndHebrewOnly) {
  struct Case {
    uint16_t languageId;
    bool rightToLeft;
  };
  const Case cases[] = {
      {0x0401, true},  {0x0C01, true},  {0x3801, true},  {0x040D, true},  {0xFC0D, true},
      {0x0001, true},  {0x0409, false}, {0x0000, false}, {0x0429, false}, {0x0420, false},
      {0x0501, false}, {0x040E, false}, {0x0C0D, true},  {0x0201, false}, {0x041A, false},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(testing::Message() << std::hex << expected.languageId);
    EXPECT_EQ(IsRightToLeftLanguage(expected.languageId), expected.rightToLeft);
    EXPECT_EQ(IsRightToLeftLanguageIndex(StringTableLanguageFor(expected.languageId)),
              expected.rightToLeft);
  }

  // Asked afresh each time, unlike the table's language.
  FakeSystem system;
  system.uiLanguages = {0x040D, 0x0409, 0x0401};
  EXPECT_TRUE(IsRightToLeftUser(system));
  EXPECT_FALSE(IsRightToLeftUser(system));
  EXPECT_TRUE(IsRightToLeftUser(system));
  EXPECT_EQ(system.uiLanguageQueries, 3);
}

}  // namespace
