#include "pages/advanced_logic.h"

#include "app/user_prompts.h"
#include "dialogs/clear_data_logic.h"
#include "platform/private_data_folder.h"

DeauthorizeOutcome DeauthorizeComputer(SMUserPrompts& prompts, SMPrivateDataFolder& privateData) {
  if (!prompts.ConfirmBox(kDeauthorizeTextId, kDeauthorizeCloseBrowsersId, kDeauthorizeCaptionId)) {
    return DeauthorizeOutcome::kCancelled;
  }
  if (privateData.DeleteLicenceFiles()) return DeauthorizeOutcome::kDeleted;
  prompts.ErrorBox(kLicencesNotDeletedId, kUnableToDeleteCaptionId);
  return DeauthorizeOutcome::kFailed;
}
