#include "app/modal_dialog.h"

#include "layout/dialog_layout.h"

SMModalDialog::SMModalDialog(SMSystem& system, SMStringTable& strings, int templateId,
                             SMDialogTexts texts)
    : SMDialogObject(system, strings, texts),
      rightToLeft_(IsRightToLeftUser(system)),
      templateId_(templateId) {}

INT_PTR SMModalDialog::Run() {
  return RunModal(templateId_, GetActiveWindow());
}

bool SMModalDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (message != WM_INITDIALOG) return OnDialogMessage(message, wParam, lParam, result);
  if (rightToLeft_) MakeRightToLeft(window_);
  SetDeclaredTexts();
  SetMoreTexts();
  FitDialogToTexts(window_);
  result = OnStart();
  return true;
}
