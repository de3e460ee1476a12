#pragma once

#include <string>

#include "app/modal_dialog.h"

// "Edit Compatibility Location": one path, typed or picked. Ends with 0 when confirmed (the
// path is then in location()) and 1 when cancelled.
class AddLocationDialog : public SMModalDialog {
 public:
  AddLocationDialog(SMSystem& system, SMStringTable& strings);
  // Runs the dialog; true when the user confirmed a path.
  bool RunConfirmed();
  const std::wstring& location() const { return location_; }

 protected:
  void SetMoreTexts() override;
  LRESULT OnStart() override;
  bool OnDialogMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  void PickFile();
  void PickFolder();
  void ShowPickedPath(const std::wstring& path);
  std::wstring EditText() const;

  std::wstring location_;
};
