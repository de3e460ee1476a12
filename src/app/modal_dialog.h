#pragma once

#include "app/dialog_object.h"

// Base of the modal dialogs opened from the pages. Every one starts the same way: mirrored
// when the user's language reads right to left (decided when the object is made, as the pages
// decide it), then its texts, then the layout fitted to those texts, then its own start.
class SMModalDialog : public SMDialogObject {
 public:
  SMModalDialog(SMSystem& system, SMStringTable& strings, int templateId, SMDialogTexts texts = {});

  // Runs the dialog over the active window: its end code, or -1 when it could not be shown.
  INT_PTR Run();

 protected:
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) final;
  // The title and the texts beyond the declared ones, including the items of its choice lists.
  virtual void SetMoreTexts() = 0;
  // Runs once the controls have their places; the answer to WM_INITDIALOG (TRUE: the system
  // puts the focus on the first control).
  virtual LRESULT OnStart() { return TRUE; }
  // Every message after the start; true when it was handled.
  virtual bool OnDialogMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) = 0;

  const bool rightToLeft_;

 private:
  const int templateId_;
};
