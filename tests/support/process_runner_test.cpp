#include "support/process_runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

using std::chrono::milliseconds;

TEST(StartWithRetries, RetriesOnlyTransientErrorsAndWaitsLongerEachTime) {
  struct Case {
    std::vector<unsigned long> errors;  // what each attempt returns
    unsigned long error;
    int attempts;
  };
  const Case cases[] = {
      {{0}, 0, 1},
      {{2}, 2, 1},  // a missing program is not retried
      {{8, 1450, 1359, 0}, 0, 4},
      {{1450, 5}, 5, 2},
      {std::vector<unsigned long>(kStartAttempts + 1, 1359), 1359, kStartAttempts},
  };
  for (const Case& test : cases) {
    size_t next = 0;
    std::vector<milliseconds> waits;
    StartResult result = StartWithRetries(
        "p", [&] { return test.errors.at(next++); },
        [&](milliseconds wait) { waits.push_back(wait); });
    const std::string label = testing::PrintToString(test.errors);
    EXPECT_EQ(result.error, test.error) << label;
    EXPECT_EQ(result.attempts, test.attempts) << label;
    ASSERT_EQ(waits.size(), static_cast<size_t>(test.attempts - 1)) << label;
    for (size_t i = 1; i < waits.size(); ++i) EXPECT_GT(waits[i], waits[i - 1]) << label;
  }
}

TEST(RunProcess, AMissingProgramFailsAtOnceNamingTheErrorAndTheAttempts) {
  const std::string missing = BesideTestProgram("no-such-program.exe");
  ProcessResult result;
  EXPECT_NONFATAL_FAILURE(result = RunProcess(missing, {}), "after 1 attempt with error 2: ");
  EXPECT_THAT(result.failure, testing::HasSubstr(missing));
  EXPECT_EQ(result.exitCode, -1);
}

}  // namespace
