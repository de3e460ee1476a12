#include "l10n/string_table.h"

#include "l10n/string_data.h"

namespace {

constexpr int kEnglishUS = 0;
constexpr int kEnglishUK = 22;
constexpr int kArabic = 23;
constexpr int kHebrew = 24;
constexpr int kChineseSimplified = 14;
constexpr int kChineseTraditional = 15;
constexpr int kPortugueseBrazil = 10;
constexpr int kPortuguesePortugal = 17;
constexpr int kCroatian = 29;
constexpr int kSerbianLatin = 35;

constexpr uint16_t kPrimaryArabic = 1;
constexpr uint16_t kPrimaryChinese = 4;
constexpr uint16_t kPrimaryEnglish = 9;
constexpr uint16_t kPrimaryHebrew = 13;
constexpr uint16_t kPrimaryPortuguese = 22;
constexpr uint16_t kPrimaryCroatianSerbian = 26;

// Column by primary language id; 0 where the language has no column. Chinese, English,
// Portuguese and Croatian/Serbian depend on the sub-language and are decided before this.
constexpr int kColumnByPrimary[] = {
    0,  23, 26, 0,  0,  1,  16, 2,  20, 0,   // 0-9
    3,  21, 4,  24, 19, 0,  5,  6,  7,  8,   // 10-19
    18, 9,  0,  0,  28, 11, 0,  25, 0,  12,  // 20-29
    33, 13, 0,  0,  30, 0,  27, 34, 31, 32,  // 30-39
};
constexpr uint16_t kPrimaryCount = sizeof(kColumnByPrimary) / sizeof(kColumnByPrimary[0]);

uint16_t PrimaryLanguage(uint16_t languageId) {
  return languageId & 0x3FF;
}
uint16_t SubLanguage(uint16_t languageId) {
  return languageId >> 10;
}

// Position of id in the index, or -1. The bounds are signed so that an id below the first
// entry ends the search at high = -1 instead of wrapping around.
int32_t FindIndexPosition(uint32_t id) {
  int32_t low = 0;
  int32_t high = kStringCount - 1;
  while (low <= high) {
    const int32_t middle = (low + high) / 2;
    if (kStringIndex[middle].id == id) return middle;
    if (id < kStringIndex[middle].id) {
      high = middle - 1;
    } else {
      low = middle + 1;
    }
  }
  // An id above the last entry leaves low one past the end: it must not be read.
  if (low >= kStringCount || kStringIndex[low].id != id) return -1;
  return low;
}

}  // namespace

const char* SMStringTable::GetString(TextId id) {
  const int32_t position = FindIndexPosition(static_cast<uint32_t>(id));
  if (position < 0) return nullptr;
  int language = GetLanguageIndex();
  if (language < 0 || language >= kStringLanguageCount) language = kEnglishUS;
  return kStringTexts[language * kStringCount + static_cast<int>(kStringIndex[position].slot)];
}

int SMUserLanguageStringTable::GetLanguageIndex() {
  if (cachedLanguage_ != -1) return cachedLanguage_;
  cachedLanguage_ = StringTableLanguageFor(system_.UserDefaultUILanguage());
  return cachedLanguage_;
}

int StringTableLanguageFor(uint16_t languageId) {
  const uint16_t primary = PrimaryLanguage(languageId);
  const uint16_t sub = SubLanguage(languageId);
  switch (primary) {
    case kPrimaryChinese:  // Taiwan, Hong Kong and Macao read traditional characters
      return (sub == 1 || sub == 3 || sub == 5) ? kChineseTraditional : kChineseSimplified;
    case kPrimaryEnglish:
      return (languageId & ~0x3FF) == 0x800 ? kEnglishUK : kEnglishUS;
    case kPrimaryPortuguese:
      return (languageId & ~0x3FF) == 0x400 ? kPortugueseBrazil : kPortuguesePortugal;
    case kPrimaryCroatianSerbian:  // Serbian in Latin script: Serbia and Montenegro, Serbia
      return (sub == 2 || sub == 9) ? kSerbianLatin : kCroatian;
    default:
      return primary < kPrimaryCount ? kColumnByPrimary[primary] : kEnglishUS;
  }
}

bool IsRightToLeftLanguage(uint16_t languageId) {
  const uint16_t primary = PrimaryLanguage(languageId);
  return primary == kPrimaryArabic || primary == kPrimaryHebrew;
}

bool IsRightToLeftUser(SMSystem& system) {
  return IsRightToLeftLanguage(system.UserDefaultUILanguage());
}

bool IsRightToLeftLanguageIndex(int languageIndex) {
  return languageIndex == kArabic || languageIndex == kHebrew;
}
