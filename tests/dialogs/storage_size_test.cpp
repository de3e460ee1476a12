// Sizes as the by-site lists show them.
#include "dialogs/storage_size.h"

#include <gtest/gtest.h>

#include "l10n/string_table.h"

TEST(StorageSize, SingleFloatStepsDecideTheDigits) {
  struct Case {
    uint64_t bytes;
    int language;
    const char* text;
  };
  const Case cases[] = {
      {1023, 0, "1023 bytes"},
      {1024, 0, "1 kB"},
      {1048575, 0, "1023 kB"},
      {1048576, 0, "1.00 MB"},
      {1073741823, 0, "1024.00 MB"},
      {1073741824, 0, "1.00 GB"},
      // 16777217 is not a float: it rounds to 16777216, so the player shows exactly 16.00 MB.
      {16777217, 0, "16.00 MB"},
      {2048, 22, "2 KB"},
  };
  for (const Case& c : cases) {
    SMFixedLanguageStringTable strings(c.language);
    EXPECT_EQ(FormatStorageSize(strings, c.bytes), c.text) << c.bytes;
  }
}
