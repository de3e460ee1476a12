#pragma once

#include <string>
#include <vector>

#include "app/modal_dialog.h"

class SMSettingsManager;

// "Trusted Location Settings": the list of trusted files and folders, with Add, in-place
// editing and Remove. Every change is in the master settings file at once.
class TrustedLocationsDialog : public SMModalDialog {
 public:
  TrustedLocationsDialog(SMSystem& system, SMStringTable& strings, SMSettingsManager& settings);

 protected:
  void SetMoreTexts() override;
  LRESULT OnStart() override;
  bool OnDialogMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  // Shows the setting as it is now.
  void FillList();
  void InsertRow(int index, const std::string& location);
  void Add();
  void RemoveSelected();
  bool OnNotify(const NMHDR& header, LRESULT& result);
  void EditFocusedRow();
  void BeginLabelEdit(int row);
  // True when the row may take the new text.
  bool EndLabelEdit(int row, const wchar_t* text);

  SMSettingsManager& settings_;
  HWND list_ = nullptr;
  // The rows' full texts in UTF-8, in row order; the list control may cut long ones short.
  std::vector<std::string> locations_;
  // The text of the row being edited while an edit is under way.
  std::wstring editedText_;
};
