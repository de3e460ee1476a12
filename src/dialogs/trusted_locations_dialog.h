#pragma once

#include <string>
#include <vector>

#include "app/app_startup.h"
#include "app/dialog_object.h"

// "Trusted Location Settings": the list of trusted files and folders, with Add, in-place
// editing and Remove. Every change is in the master settings file at once.
class TrustedLocationsDialog : public SMDialogObject {
 public:
  explicit TrustedLocationsDialog(const SMAppObjects& objects);
  // Runs the dialog over the active window.
  void Run();

 protected:
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  void Initialise();
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
