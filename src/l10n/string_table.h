#pragma once

#include <cstdint>

#include "l10n/text_id.h"
#include "platform/system.h"

// Every user-visible text, by its name, in the user's interface language.
class SMStringTable {
 public:
  virtual ~SMStringTable() = default;
  // 0..35, the column of the text matrix.
  virtual int GetLanguageIndex() = 0;
  // The UTF-8 text of id in the table's language; nullptr when the id is not in the table.
  const char* GetString(TextId id);
};

// Picks the language once, from the user's default interface language, and keeps it.
class SMUserLanguageStringTable : public SMStringTable {
 public:
  explicit SMUserLanguageStringTable(SMSystem& system) : system_(system) {}
  int GetLanguageIndex() override;

 private:
  SMSystem& system_;
  int cachedLanguage_ = -1;
};

// Held to one column, whatever the user's language: for showing every page in every language.
class SMFixedLanguageStringTable : public SMStringTable {
 public:
  explicit SMFixedLanguageStringTable(int languageIndex) : languageIndex_(languageIndex) {}
  int GetLanguageIndex() override { return languageIndex_; }

 private:
  int languageIndex_;
};

// The column of the text matrix for a GetUserDefaultUILanguage value; 0 (English) when the
// language has no column of its own.
int StringTableLanguageFor(uint16_t languageId);

// Primary language 1 (Arabic) or 13 (Hebrew): pages and message boxes are right to left.
bool IsRightToLeftLanguage(uint16_t languageId);
bool IsRightToLeftUser(SMSystem& system);
// The same decision for a column of the text matrix (23 Arabic, 24 Hebrew).
bool IsRightToLeftLanguageIndex(int languageIndex);
