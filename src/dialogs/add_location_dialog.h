#pragma once

#include <string>

#include "app/dialog_object.h"

// "Edit Compatibility Location": one path, typed or picked. Ends with 0 when confirmed (the
// path is then in location()) and 1 when cancelled.
class AddLocationDialog : public SMDialogObject {
 public:
  AddLocationDialog(SMSystem& system, SMStringTable& strings) : SMDialogObject(system, strings) {}
  // True when the user confirmed a path.
  bool Run(HWND owner);
  const std::wstring& location() const { return location_; }

 protected:
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  void Initialise();
  void PickFile();
  void PickFolder();
  void ShowPickedPath(const std::wstring& path);
  std::wstring EditText() const;

  std::wstring location_;
};
