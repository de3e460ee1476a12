#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

#include "app/user_prompts.h"
#include "l10n/string_table.h"
#include "platform/system.h"

// Base of every page and modal dialog: one dialog procedure for all of them, which finds the
// object in the window's DWLP_USER slot and hands it each message.
class SMDialogObject : public SMUserPrompts {
 public:
  SMDialogObject(SMSystem& system, SMStringTable& strings) : system_(system), strings_(strings) {}
  SMDialogObject(const SMDialogObject&) = delete;
  SMDialogObject& operator=(const SMDialogObject&) = delete;

  // The object's message map. Runs only for map 0; `handled` is kept across the call.
  bool ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                            LRESULT& result, DWORD mapId);
  ~SMDialogObject() override = default;
  virtual DLGPROC GetDialogProc();
  virtual void OnFinalMessage(HWND window);

  // Runs this object as a modal dialog of the template under the program's visual-styles
  // activation context: the dialog's end code, or -1 when it could not be shown.
  INT_PTR RunModal(int templateId, HWND owner);

  HWND window() const { return window_; }

  // The text of id in the user's language, or nullopt.
  std::optional<std::wstring> GetText(uint32_t id);
  // A missing text leaves the control with an empty caption.
  void SetControlText(int controlId, uint32_t textId);
  void SetControlLink(int controlId, uint32_t textId);
  void OpenHelpLink(uint32_t urlId);

  bool ConfirmBox(uint32_t textId1, uint32_t textId2, uint32_t captionId) override;
  void ErrorBox(uint32_t textId, uint32_t captionId) override;

  // The radio group that starts at firstId and runs to the next WS_GROUP sibling.
  int ReadRadioGroup(int firstId);
  void WriteRadioGroup(int firstId, int index);

  // Registers the object whose dialog window is about to be created on this thread.
  static void SetObjectBeingCreated(SMDialogObject* object);
  static INT_PTR CALLBACK StartDialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

 protected:
  // The map itself; each returns true when it handled the message.
  virtual bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) = 0;

  SMSystem& system_;
  SMStringTable& strings_;
  HWND window_ = nullptr;
  bool handled_ = false;

 private:
  static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  static INT_PTR Dispatch(SMDialogObject* object, HWND window, UINT message, WPARAM wParam,
                          LPARAM lParam);
};

// Adds WS_EX_LAYOUTRTL | WS_EX_RTLREADING to a window's extended style.
void MakeRightToLeft(HWND window);
