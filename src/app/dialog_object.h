#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "l10n/string_table.h"
#include "platform/system.h"

// The text of id in the table's language, in the window system's wide characters; nullopt
// when the id has no text or it cannot be converted.
std::optional<std::wstring> WideText(SMStringTable& strings, TextId id);

// A control whose caption is one text of the table.
struct SMControlText {
  int controlId;
  TextId text;
};

// A link control: its caption, made one link as a whole, and the help address a click opens.
struct SMHelpLink {
  int controlId;
  TextId caption;
  TextId url;
};

// The fixed texts of a page or dialog, declared once beside its template's ids: set when the
// window starts, and the links' addresses looked up when one is clicked.
struct SMDialogTexts {
  std::span<const SMControlText> captions;
  std::span<const SMHelpLink> links;
};

// Base of every page and modal dialog: one dialog procedure for all of them, which finds the
// object in the window's DWLP_USER slot and hands it each message.
class SMDialogObject {
 public:
  SMDialogObject(SMSystem& system, SMStringTable& strings, SMDialogTexts texts = {})
      : system_(system), strings_(strings), texts_(texts) {}
  SMDialogObject(const SMDialogObject&) = delete;
  SMDialogObject& operator=(const SMDialogObject&) = delete;

  // The object's message map. Runs only for map 0; `handled` is kept across the call.
  bool ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                            LRESULT& result, DWORD mapId);
  virtual ~SMDialogObject() = default;
  virtual DLGPROC GetDialogProc();
  virtual void OnFinalMessage(HWND window);

  // Runs this object as a modal dialog of the template under the program's visual-styles
  // activation context: the dialog's end code, or -1 when it could not be shown.
  INT_PTR RunModal(int templateId, HWND owner);

  HWND window() const { return window_; }

  // The text of id in the user's language, or nullopt.
  std::optional<std::wstring> GetText(TextId id);
  // A missing text leaves the control (or the window's title) with an empty caption.
  void SetControlText(int controlId, TextId text);
  void SetControlLink(int controlId, TextId text);
  void SetCaption(TextId text);
  void OpenHelpLink(TextId url);

  // Takes the object its creator put in SMCreationSlot<SMDialogObject> just before the window
  // was created, and hands it this and every later message.
  static INT_PTR CALLBACK StartDialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

 protected:
  // Sets every declared caption and link.
  void SetDeclaredTexts();
  // Opens the address of the declared link with this control id; false when there is none.
  bool OpenDeclaredLink(UINT_PTR controlId) { return OpenLinkIn(texts_.links, controlId); }
  // The same over other links.
  bool OpenLinkIn(std::span<const SMHelpLink> links, UINT_PTR controlId);

  // The map itself; each returns true when it handled the message.
  virtual bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) = 0;

  SMSystem& system_;
  SMStringTable& strings_;
  HWND window_ = nullptr;
  bool handled_ = false;

 private:
  const SMDialogTexts texts_;

  static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  static INT_PTR Dispatch(SMDialogObject* object, HWND window, UINT message, WPARAM wParam,
                          LPARAM lParam);
};

// Adds WS_EX_LAYOUTRTL | WS_EX_RTLREADING to a window's extended style.
void MakeRightToLeft(HWND window);
