#include "dialogs/add_location_dialog.h"

// clang-format off
#include <windows.h>
#include <commdlg.h>
#include <shlobj.h>
// clang-format on

#include <vector>

#include "dialogs/add_location_ids.h"
#include "dialogs/trusted_locations_logic.h"

namespace {

// The file picker's library is loaded when the user first asks for it, not with the program:
// it brings the printing system along, and every start of the sheet would wait for it.
bool OpenFilePicker(OPENFILENAMEW& request) {
  using GetOpenFileNameFunction = BOOL(WINAPI*)(OPENFILENAMEW*);
  static const auto getOpenFileName = [] {
    HMODULE library = LoadLibraryW(L"comdlg32.dll");
    return library == nullptr ? nullptr
                              : reinterpret_cast<GetOpenFileNameFunction>(reinterpret_cast<void*>(
                                    GetProcAddress(library, "GetOpenFileNameW")));
  }();
  return getOpenFileName != nullptr && getOpenFileName(&request);
}

constexpr INT_PTR kConfirmed = 0;
constexpr INT_PTR kCancelled = 1;

std::wstring TextOrEmpty(const std::optional<std::wstring>& text) {
  return text.value_or(std::wstring());
}

constexpr SMControlText kCaptions[] = {
    {IDC_ADD_LOCATION_LABEL, TextId::kEditLocationLabel},
    {IDC_ADD_LOCATION_FILE, TextId::kAddFile},
    {IDC_ADD_LOCATION_FOLDER, TextId::kAddFolder},
    {IDOK, TextId::kConfirm},
    {IDCANCEL, TextId::kCancel},
};

}  // namespace

AddLocationDialog::AddLocationDialog(SMSystem& system, SMStringTable& strings)
    : SMModalDialog(system, strings, IDD_ADD_LOCATION, {kCaptions, {}}) {}

bool AddLocationDialog::RunConfirmed() {
  return Run() == kConfirmed;
}

void AddLocationDialog::SetMoreTexts() {
  SetCaption(TextId::kEditLocationTitle);
}

LRESULT AddLocationDialog::OnStart() {
  // Paths may be longer than the edit's default limit.
  SendDlgItemMessageW(window_, IDC_ADD_LOCATION_PATH, EM_SETLIMITTEXT, 0, 0);
  EnableWindow(GetDlgItem(window_, IDOK), FALSE);
  return TRUE;
}

bool AddLocationDialog::OnDialogMessage(UINT message, WPARAM wParam, LPARAM, LRESULT&) {
  if (message != WM_COMMAND) return false;
  const int controlId = LOWORD(wParam);
  const int code = HIWORD(wParam);
  if (controlId == IDC_ADD_LOCATION_PATH && code == EN_CHANGE) {
    EnableWindow(GetDlgItem(window_, IDOK),
                 GetWindowTextLengthW(GetDlgItem(window_, IDC_ADD_LOCATION_PATH)) > 0);
    return true;
  }
  if (code != BN_CLICKED) return false;
  switch (controlId) {
    case IDC_ADD_LOCATION_FILE:
      PickFile();
      return true;
    case IDC_ADD_LOCATION_FOLDER:
      PickFolder();
      return true;
    case IDOK:
      // Enter in the edit presses the default button even while it is disabled.
      if (!IsWindowEnabled(GetDlgItem(window_, IDOK))) return true;
      location_ = EditText();
      EndDialog(window_, kConfirmed);
      return true;
    case IDCANCEL:
      EndDialog(window_, kCancelled);
      return true;
    default:
      return false;
  }
}

std::wstring AddLocationDialog::EditText() const {
  HWND edit = GetDlgItem(window_, IDC_ADD_LOCATION_PATH);
  std::vector<wchar_t> buffer(static_cast<size_t>(GetWindowTextLengthW(edit)) + 1);
  GetWindowTextW(edit, buffer.data(), static_cast<int>(buffer.size()));
  return PickedPathText(buffer.data(), buffer.size());
}

void AddLocationDialog::ShowPickedPath(const std::wstring& path) {
  // The edit's change notification enables "Confirm".
  SetDlgItemTextW(window_, IDC_ADD_LOCATION_PATH, path.c_str());
}

void AddLocationDialog::PickFile() {
  const std::wstring filter = PickerFilter(TextOrEmpty(GetText(TextId::kPickerFilterVtmName)),
                                           TextOrEmpty(GetText(TextId::kPickerFilterVtmPattern)));
  const std::wstring title = TextOrEmpty(GetText(TextId::kPickFileTitle));
  std::vector<wchar_t> path(kLongestPickedPath, L'\0');
  OPENFILENAMEW request{};
  request.lStructSize = sizeof request;
  request.hwndOwner = window_;
  request.lpstrFilter = filter.c_str();
  request.nFilterIndex = 1;
  request.lpstrFile = path.data();
  request.nMaxFile = static_cast<DWORD>(path.size());
  request.lpstrTitle = title.c_str();
  request.Flags =
      OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (OpenFilePicker(request)) ShowPickedPath(PickedPathText(path.data(), path.size()));
}

void AddLocationDialog::PickFolder() {
  const std::wstring title = TextOrEmpty(GetText(TextId::kPickFolderTitle));
  BROWSEINFOW request{};
  request.hwndOwner = window_;
  request.lpszTitle = title.c_str();
  request.ulFlags = BIF_RETURNONLYFSDIRS;
  PIDLIST_ABSOLUTE folder = SHBrowseForFolderW(&request);
  if (folder == nullptr) return;
  wchar_t path[MAX_PATH] = {};
  if (SHGetPathFromIDListW(folder, path)) ShowPickedPath(PickedPathText(path, MAX_PATH));
  ILFree(folder);  // the shell's own allocation, freed by the shell
}
