#include "pages/advanced_logic.h"

#include "app/user_prompts.h"
#include "platform/private_data_folder.h"

DeauthorizeOutcome DeauthorizeComputer(SMUserPrompts& prompts, SMPrivateDataFolder& privateData) {
  if (!prompts.ConfirmBox(TextId::kDeauthorizeText, TextId::kDeauthorizeCloseBrowsers,
                          TextId::kDeauthorizeCaption)) {
    return DeauthorizeOutcome::kCancelled;
  }
  if (privateData.DeleteLicenceFiles()) return DeauthorizeOutcome::kDeleted;
  prompts.ErrorBox(TextId::kLicencesNotDeleted, TextId::kUnableToDeleteCaption);
  return DeauthorizeOutcome::kFailed;
}
