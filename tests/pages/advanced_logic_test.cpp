// The Advanced page's deauthorization: the question, the deletion and the error.
#include "pages/advanced_logic.h"

#include <gtest/gtest.h>

#include "platform/private_data_folder.h"
#include "support/scripted_prompts.h"
#include "support/test_profile.h"

namespace fs = std::filesystem;

TEST(Deauthorize, DeletesLicencesOnlyAfterOkAndReportsWhatIsLeft) {
  struct Case {
    bool confirm;
    bool locked;
    DeauthorizeOutcome outcome;
    std::vector<std::vector<TextId>> errors;
  };
  const Case cases[] = {
      {.confirm = false, .locked = false, .outcome = DeauthorizeOutcome::kCancelled},
      {.confirm = true,
       .locked = true,
       .outcome = DeauthorizeOutcome::kFailed,
       .errors = {{TextId::kLicencesNotDeleted, TextId::kUnableToDeleteCaption}}},
  };
  for (const Case& c : cases) {
    TestProfile profile;
    LockingPlatform platform(profile.system);
    const fs::path licenceFile = PathFromUtf8(platform.PrivateDataFolder()) / "store" / "l.bin";
    WriteFileBytes(licenceFile, "licence");
    if (c.locked) platform.locked = PathToUtf8(licenceFile);
    SMPrivateDataFolder licences(platform.PrivateDataFolder(), &platform);
    ScriptedPrompts prompts({c.confirm});

    EXPECT_EQ(DeauthorizeComputer(prompts, licences), c.outcome);
    EXPECT_EQ(prompts.asked.size(), 1u);
    EXPECT_EQ(prompts.errors, c.errors);
    EXPECT_TRUE(fs::exists(licenceFile));
  }
}
