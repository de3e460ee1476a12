#pragma once

#include "app/app_startup.h"
#include "app/modal_dialog.h"
#include "dialogs/clear_data_logic.h"

// "Delete All Site Data": two check boxes and "Delete Data". Opened from the Storage and the
// Advanced page; it always ends with 1, whatever was pressed.
class ClearDataDialog : public SMModalDialog {
 public:
  explicit ClearDataDialog(const SMAppObjects& objects);

 protected:
  void SetMoreTexts() override;
  LRESULT OnStart() override;
  bool OnDialogMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  void DeleteData();

  SMAppObjects objects_;
  int siteDataState_ = kInitialSiteDataState;
  int licenceState_ = kInitialLicenceState;
};
