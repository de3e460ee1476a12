#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "settings_round_trip.h"
#include "support/temp_folder.h"

namespace fs = std::filesystem;

// The fuzzer's seed corpus and the format test files, through the fuzzer's own property, on every
// platform the tests run on (libFuzzer itself only runs natively with clang).
TEST(SettingsCorpus, EveryFileKeepsItsValuesThroughAWriteAndARead) {
  int replayed = 0;
  for (const char* folder : {"corpus", "testdata/golden", "testdata/must-fail"}) {
    for (const fs::directory_entry& entry :
         fs::directory_iterator(fs::path(VP_SETTINGS_TESTS) / folder)) {
      if (entry.path().extension() != ".sol") continue;
      SCOPED_TRACE(PathToUtf8(entry.path()));
      std::string bytes = ReadFileBytes(entry.path());
      std::string whyNot;
      testing::internal::CaptureStderr();
      bool holds = SettingsRoundTripHolds(
          std::span<const uint8_t>(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()),
          &whyNot);
      testing::internal::GetCapturedStderr();
      EXPECT_TRUE(holds) << whyNot;
      ++replayed;
    }
  }
  EXPECT_GE(replayed, 15);
}
