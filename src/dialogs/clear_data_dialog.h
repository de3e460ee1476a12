#pragma once

#include "app/app_startup.h"
#include "app/dialog_object.h"
#include "dialogs/clear_data_logic.h"

// "Delete All Site Data": two check boxes and "Delete Data". Opened from the Storage and the
// Advanced page; it always ends with 1, whatever was pressed.
class ClearDataDialog : public SMDialogObject {
 public:
  explicit ClearDataDialog(const SMAppObjects& objects);
  // Runs the dialog over the active window.
  void Run();

 protected:
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  void SetTexts();
  void DeleteData();

  SMAppObjects objects_;
  int siteDataState_ = kInitialSiteDataState;
  int licenceState_ = kInitialLicenceState;
};
