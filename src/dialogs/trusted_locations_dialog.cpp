#include "dialogs/trusted_locations_dialog.h"

#include <commctrl.h>

#include "dialogs/add_location_dialog.h"
#include "dialogs/add_location_ids.h"
#include "dialogs/trusted_locations_ids.h"
#include "dialogs/trusted_locations_logic.h"
#include "platform/win32/utf16.h"

namespace {

constexpr SMControlText kCaptions[] = {
    {IDC_TRUSTED_DESCRIPTION, TextId::kTrustedLocationsDescription},
    {IDC_TRUSTED_ADD, TextId::kAddEllipsis},
    {IDC_TRUSTED_REMOVE, TextId::kRemove},
    {IDC_TRUSTED_CLOSE, TextId::kClose},
};

constexpr SMHelpLink kLinks[] = {
    {IDC_TRUSTED_HELP_LINK, TextId::kTrustedLocationsLink, TextId::kTrustedLocationsUrl},
};

}  // namespace

TrustedLocationsDialog::TrustedLocationsDialog(SMSystem& system, SMStringTable& strings,
                                               SMSettingsManager& settings)
    : SMModalDialog(system, strings, IDD_TRUSTED_LOCATIONS, {kCaptions, kLinks}),
      settings_(settings) {}

void TrustedLocationsDialog::SetMoreTexts() {
  SetCaption(TextId::kTrustedLocationsTitle);
}

LRESULT TrustedLocationsDialog::OnStart() {
  list_ = GetDlgItem(window_, IDC_TRUSTED_LIST);
  // The column fills the list as the layout left it.
  std::optional<std::wstring> heading = GetText(TextId::kColumnTrustedLocation);
  RECT client{};
  GetClientRect(list_, &client);
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH;
  column.cx = client.right - GetSystemMetrics(SM_CXVSCROLL);
  column.pszText = heading ? heading->data() : const_cast<wchar_t*>(L"");
  SendMessageW(list_, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
  FillList();
  return TRUE;
}

void TrustedLocationsDialog::FillList() {
  SendMessageW(list_, LVM_DELETEALLITEMS, 0, 0);
  locations_.clear();
  for (const std::string& location : TrustedLocations(settings_)) {
    InsertRow(static_cast<int>(locations_.size()), location);
  }
}

void TrustedLocationsDialog::InsertRow(int index, const std::string& location) {
  std::wstring text = ToUtf16(location).value_or(std::wstring());
  LVITEMW item{};
  item.mask = LVIF_TEXT;
  item.iItem = index;
  item.pszText = text.data();
  int inserted =
      static_cast<int>(SendMessageW(list_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
  if (inserted < 0) return;
  locations_.insert(locations_.begin() + inserted, location);
}

bool TrustedLocationsDialog::OnDialogMessage(UINT message, WPARAM wParam, LPARAM lParam,
                                             LRESULT& result) {
  switch (message) {
    case WM_COMMAND:
      if (HIWORD(wParam) != BN_CLICKED) return false;
      switch (LOWORD(wParam)) {
        case IDC_TRUSTED_ADD:
          Add();
          return true;
        case IDC_TRUSTED_REMOVE:
          RemoveSelected();
          return true;
        case IDC_TRUSTED_CLOSE:
        case IDCANCEL:
          EndDialog(window_, 0);
          return true;
        default:
          return false;
      }
    case WM_NOTIFY:
      return OnNotify(*reinterpret_cast<const NMHDR*>(lParam), result);
    default:
      return false;
  }
}

bool TrustedLocationsDialog::OnNotify(const NMHDR& header, LRESULT& result) {
  if ((header.code == NM_CLICK || header.code == NM_RETURN) && OpenDeclaredLink(header.idFrom)) {
    return true;
  }
  if (header.hwndFrom != list_) return false;
  const auto& info = reinterpret_cast<const NMLVDISPINFOW&>(header);
  switch (header.code) {
    case LVN_BEGINLABELEDITW:
      BeginLabelEdit(info.item.iItem);
      result = FALSE;  // the edit may go ahead
      return true;
    case LVN_KEYDOWN:
      // The list edits a row on a second click only; F2 edits the focused row, as elsewhere.
      if (reinterpret_cast<const NMLVKEYDOWN&>(header).wVKey == VK_F2) EditFocusedRow();
      return true;
    case LVN_ENDLABELEDITW:
      result = EndLabelEdit(info.item.iItem, info.item.pszText) ? TRUE : FALSE;
      editedText_.clear();
      return true;
    default:
      return false;
  }
}

void TrustedLocationsDialog::EditFocusedRow() {
  if (SendMessageW(list_, LVM_GETEDITCONTROL, 0, 0) != 0) return;
  auto row = static_cast<int>(
      SendMessageW(list_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED | LVNI_SELECTED));
  if (row >= 0) SendMessageW(list_, LVM_EDITLABELW, static_cast<WPARAM>(row), 0);
}

void TrustedLocationsDialog::BeginLabelEdit(int row) {
  if (row < 0 || static_cast<size_t>(row) >= locations_.size()) return;
  editedText_ = ToUtf16(locations_[static_cast<size_t>(row)]).value_or(std::wstring());
  // The list hands its edit a text cut at its own limit; the edit gets the whole path.
  HWND edit = reinterpret_cast<HWND>(SendMessageW(list_, LVM_GETEDITCONTROL, 0, 0));
  if (edit == nullptr) return;
  SendMessageW(edit, EM_SETLIMITTEXT, 0, 0);
  SetWindowTextW(edit, editedText_.c_str());
  SendMessageW(edit, EM_SETSEL, 0, -1);
}

bool TrustedLocationsDialog::EndLabelEdit(int row, const wchar_t* text) {
  // No text: the edit was cancelled.
  if (text == nullptr || row < 0 || static_cast<size_t>(row) >= locations_.size()) return false;
  std::optional<std::string> renamed = ToUtf8(text);
  if (!renamed) return false;
  std::string& former = locations_[static_cast<size_t>(row)];
  if (RenameTrustedLocation(settings_, former, *renamed) != TrustedChange::kWritten) return false;
  former = *renamed;
  return true;
}

void TrustedLocationsDialog::Add() {
  AddLocationDialog dialog(system_, strings_);
  if (!dialog.RunConfirmed()) return;
  std::optional<std::string> location = ToUtf8(dialog.location());
  if (!location) return;
  if (AddTrustedLocation(settings_, *location) == TrustedChange::kWritten) {
    InsertRow(static_cast<int>(locations_.size()), *location);
  }
}

void TrustedLocationsDialog::RemoveSelected() {
  std::vector<std::string> removed;
  for (int row = -1;
       (row = static_cast<int>(
            SendMessageW(list_, LVM_GETNEXTITEM, static_cast<WPARAM>(row), LVNI_SELECTED))) >= 0;) {
    if (static_cast<size_t>(row) >= locations_.size()) break;
    removed.push_back(locations_[static_cast<size_t>(row)]);
  }
  // Whether the write failed or not, the list shows the setting as it is now.
  if (RemoveTrustedLocations(settings_, removed) != TrustedChange::kUnchanged) FillList();
}
