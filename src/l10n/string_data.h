#pragma once

#include <cstdint>

// The compiled-in texts, generated at build time from strings.tsv (tools/gen_string_table.py).

struct SMStringIndexEntry {
  uint32_t id;
  uint32_t slot;  // row of the text matrix
};

inline constexpr int kStringCount = 189;
inline constexpr int kStringLanguageCount = 36;

// Ascending by id.
extern const SMStringIndexEntry kStringIndex[];
// Language-major: the text of row s in language L is kStringTexts[L * kStringCount + s].
extern const char* const kStringTexts[];
