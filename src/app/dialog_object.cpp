#include "app/dialog_object.h"

#include <commctrl.h>

#include <utility>
#include <vector>

#include "app/creation_slot.h"
#include "app/page_text.h"
#include "platform/win32/utf16.h"

namespace {

constexpr LONG kRightToLeftStyles = WS_EX_LAYOUTRTL | WS_EX_RTLREADING;

// The program's own manifest (resource 1) names comctl32 version 6.
HANDLE VisualStylesContext() {
  static HANDLE context = [] {
    wchar_t modulePath[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, modulePath, MAX_PATH);
    ACTCTXW request{};
    request.cbSize = sizeof request;
    request.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
    request.lpSource = modulePath;
    request.hModule = GetModuleHandleW(nullptr);
    request.lpResourceName = MAKEINTRESOURCEW(1);
    return CreateActCtxW(&request);
  }();
  return context;
}

// Mirrors a window whose children already exist, as if it had been created mirrored: each child
// is mirrored in turn and put back at its logical position, which now counts from the right.
void MirrorWithChildren(HWND window, LONG addedStyles) {
  std::vector<std::pair<HWND, RECT>> children;
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    RECT place{};
    GetWindowRect(child, &place);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
    children.emplace_back(child, place);
  }
  SetWindowLongW(window, GWL_EXSTYLE, GetWindowLongW(window, GWL_EXSTYLE) | addedStyles);
  for (const auto& [child, place] : children) {
    MirrorWithChildren(child, WS_EX_LAYOUTRTL);
    MoveWindow(child, place.left, place.top, place.right - place.left, place.bottom - place.top,
               FALSE);
  }
}

}  // namespace

void MakeRightToLeft(HWND window) {
  LONG style = GetWindowLongW(window, GWL_EXSTYLE);
  // A page inherits the mirrored layout from its sheet when it is created, and its controls
  // from it. A modal dialog is mirrored only here, after its controls exist, which would keep
  // their places on the screen and their own left-to-right drawing.
  if ((style & WS_EX_LAYOUTRTL) != 0) {
    SetWindowLongW(window, GWL_EXSTYLE, style | kRightToLeftStyles);
    return;
  }
  MirrorWithChildren(window, kRightToLeftStyles);
  InvalidateRect(window, nullptr, TRUE);
}

bool SMDialogObject::ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                          LRESULT& result, DWORD mapId) {
  bool savedHandled = handled_;
  bool taken = false;
  if (mapId == 0) {
    window_ = window;
    handled_ = true;
    taken = OnMessage(message, wParam, lParam, result) && handled_;
  }
  handled_ = savedHandled;
  return taken;
}

DLGPROC SMDialogObject::GetDialogProc() {
  return &DialogProc;
}

void SMDialogObject::OnFinalMessage(HWND) {}

INT_PTR CALLBACK SMDialogObject::StartDialogProc(HWND window, UINT message, WPARAM wParam,
                                                 LPARAM lParam) {
  SMDialogObject* object = SMCreationSlot<SMDialogObject>::Take();
  if (object == nullptr) return FALSE;
  object->window_ = window;
  SetWindowLongPtrW(window, DWLP_USER, reinterpret_cast<LONG_PTR>(object));
  SetWindowLongPtrW(window, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(object->GetDialogProc()));
  return Dispatch(object, window, message, wParam, lParam);
}

INT_PTR CALLBACK SMDialogObject::DialogProc(HWND window, UINT message, WPARAM wParam,
                                            LPARAM lParam) {
  auto* object = reinterpret_cast<SMDialogObject*>(GetWindowLongPtrW(window, DWLP_USER));
  if (object == nullptr) return FALSE;
  return Dispatch(object, window, message, wParam, lParam);
}

INT_PTR SMDialogObject::Dispatch(SMDialogObject* object, HWND window, UINT message, WPARAM wParam,
                                 LPARAM lParam) {
  LRESULT result = 0;
  bool taken = false;
  // Nothing thrown may unwind through the window manager's frames.
  try {
    taken = object->ProcessWindowMessage(window, message, wParam, lParam, result, 0);
  } catch (...) {
    taken = false;
  }
  if (message == WM_NCDESTROY) object->OnFinalMessage(window);
  if (!taken) return FALSE;
  // The answer to WM_INITDIALOG is the procedure's own return value.
  if (message == WM_INITDIALOG) return static_cast<INT_PTR>(result);
  SetWindowLongPtrW(window, DWLP_MSGRESULT, result);
  return TRUE;
}

INT_PTR SMDialogObject::RunModal(int templateId, HWND owner) {
  ULONG_PTR cookie = 0;
  HANDLE context = VisualStylesContext();
  if (context == INVALID_HANDLE_VALUE || !ActivateActCtx(context, &cookie)) return -1;
  SMCreationSlot<SMDialogObject>::Put(this);
  INT_PTR endCode = DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(templateId), owner,
                                    &StartDialogProc, 0);
  SMCreationSlot<SMDialogObject>::Put(nullptr);
  DWORD lastError = endCode == -1 ? GetLastError() : 0;
  DeactivateActCtx(0, cookie);
  if (endCode == -1) SetLastError(lastError);
  return endCode;
}

std::optional<std::wstring> WideText(SMStringTable& strings, TextId id) {
  const char* text = strings.GetString(id);
  if (text == nullptr) return std::nullopt;
  return ToUtf16(text);
}

std::optional<std::wstring> SMDialogObject::GetText(TextId id) {
  return WideText(strings_, id);
}

void SMDialogObject::SetControlText(int controlId, TextId textId) {
  std::optional<std::wstring> text = GetText(textId);
  SetWindowTextW(GetDlgItem(window_, controlId), text ? text->c_str() : L"");
}

void SMDialogObject::SetControlLink(int controlId, TextId textId) {
  std::optional<std::wstring> text = GetText(textId);
  WrapLink(text);
  SetWindowTextW(GetDlgItem(window_, controlId), text ? text->c_str() : L"");
}

void SMDialogObject::SetCaption(TextId textId) {
  std::optional<std::wstring> text = GetText(textId);
  SetWindowTextW(window_, text ? text->c_str() : L"");
}

void SMDialogObject::SetDeclaredTexts() {
  for (const SMControlText& caption : texts_.captions) {
    SetControlText(caption.controlId, caption.text);
  }
  for (const SMHelpLink& link : texts_.links) SetControlLink(link.controlId, link.caption);
}

bool SMDialogObject::OpenLinkIn(std::span<const SMHelpLink> links, UINT_PTR controlId) {
  for (const SMHelpLink& link : links) {
    if (static_cast<UINT_PTR>(link.controlId) != controlId) continue;
    OpenHelpLink(link.url);
    return true;
  }
  return false;
}

void SMDialogObject::OpenHelpLink(TextId urlId) {
  // A missing address still makes the call; the shell then opens nothing.
  system_.OpenUrl(window_, strings_.GetString(urlId));
}
