#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "settings/settings_reader.h"
#include "settings_round_trip.h"
#include "support/temp_folder.h"

namespace fs = std::filesystem;

// The fuzzer's seed corpus and the golden file keep their values through a write and a read (the
// fuzzer's own property, here on every platform the tests run on; libFuzzer itself only runs
// natively with clang). The files under must-fail are refused with their exact diagnostics.
TEST(SettingsCorpus, EveryFileRoundTripsAndEveryMustFailFileIsRefused) {
  int checked = 0;
  for (const char* folder : {"corpus", "testdata/golden", "testdata/must-fail"}) {
    for (const fs::directory_entry& entry :
         fs::directory_iterator(fs::path(VP_SETTINGS_TESTS) / folder)) {
      if (entry.path().extension() != ".sol") continue;
      SCOPED_TRACE(PathToUtf8(entry.path()));
      const std::string bytes = ReadFileBytes(entry.path());
      testing::internal::CaptureStderr();
      if (std::string(folder) == "testdata/must-fail") {
        EXPECT_EQ(SMSettingsReader(bytes).Parse(nullptr), nullptr);
        fs::path diagnostics = entry.path();
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  ReadFileBytes(diagnostics.replace_extension(".stderr")));
      } else {
        std::string whyNot;
        EXPECT_TRUE(SettingsRoundTripHolds(
            std::span<const uint8_t>(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()),
            &whyNot))
            << whyNot;
        testing::internal::GetCapturedStderr();
      }
      ++checked;
    }
  }
  EXPECT_GE(checked, 18);
}
