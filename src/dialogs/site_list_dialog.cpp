#include "dialogs/site_list_dialog.h"

#include <commctrl.h>

#include <algorithm>

#include "app/message_box_prompts.h"
#include "dialogs/add_site_dialog.h"
#include "dialogs/site_list_ids.h"
#include "layout/dialog_layout.h"
#include "platform/win32/utf16.h"

namespace {

// What the list asks the user: the site to add, in the add-site dialog.
class AddSitePrompts : public SMMessageBoxPrompts {
 public:
  using SMMessageBoxPrompts::SMMessageBoxPrompts;

  std::optional<SMAddSiteAnswer> RunAddSite(TextId title, TextId prompt) override {
    AddSiteDialog dialog(system_, strings_, title, prompt);
    // Only Add (0) counts; Cancel (1) and a dialog that could not be shown (-1) do not.
    if (dialog.Run() != 0) return std::nullopt;
    if (!dialog.resultDomain()) return std::nullopt;
    std::optional<std::string> site = ToUtf8(*dialog.resultDomain());
    if (!site) return std::nullopt;
    return SMAddSiteAnswer{std::move(*site), dialog.choice()};
  }
};

constexpr SMControlText kCaptions[] = {
    {IDC_SITE_LIST_ADD, TextId::kAddEllipsis},
    {IDC_SITE_LIST_REMOVE, TextId::kRemove},
    {IDC_SITE_LIST_CLOSE, TextId::kClose},
};

}  // namespace

SiteListDialog::SiteListDialog(SiteListKind kind, SMSystem& system, SMStringTable& strings,
                               SMSettingsManager& settings)
    : SMModalDialog(system, strings, DesignOf(kind).templateId, {kCaptions, {}}),
      model_(kind, settings, strings,
             [&system](const std::string& site) { return system.DisplaySortKey(site); }) {}

bool SiteListDialog::OnDialogMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  switch (message) {
    case WM_COMMAND:
      OnCommand(LOWORD(wParam), HIWORD(wParam));
      result = 0;
      return true;
    case WM_NOTIFY:
      result = 0;
      return OnNotify(*reinterpret_cast<const NMHDR*>(lParam), result);
    default:
      return false;
  }
}

void SiteListDialog::SetMoreTexts() {
  const SiteListDesign& design = model_.design();
  list_ = GetDlgItem(window_, IDC_SITE_LIST_VIEW);
  combos_.clear();
  for (const SiteListCombo& combo : design.combos) {
    combos_.push_back(GetDlgItem(window_, combo.controlId));
  }
  for (HWND combo : combos_) {
    for (SiteChoice item : {kChoiceAsk, kChoiceAllow, kChoiceBlock}) {
      std::optional<std::wstring> text = GetText(ChoiceItemTextId(item));
      SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text ? text->c_str() : L""));
    }
  }
  SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
  SetCaption(design.title);
  SetControlText(IDC_SITE_LIST_DESCRIPTION, design.description);
  SetControlText(IDC_SITE_LIST_CHOICE_LABEL, design.comboLabel);
  if (design.templateId == IDD_SITE_LIST_HTTPS) {
    SetControlText(IDC_SITE_LIST_HTTPS_SECURE_LABEL, TextId::kColumnHttps);
    SetControlText(IDC_SITE_LIST_HTTPS_OTHER_LABEL, TextId::kColumnOther);
  }
  InsertColumns();
}

LRESULT SiteListDialog::OnStart() {
  addButton_ = GetDlgItem(window_, IDC_SITE_LIST_ADD);
  removeButton_ = GetDlgItem(window_, IDC_SITE_LIST_REMOVE);
  closeButton_ = GetDlgItem(window_, IDC_SITE_LIST_CLOSE);
  if (rightToLeft_) {
    // The drop-down part of a combo box is a window of its own, outside the dialog.
    for (HWND combo : combos_) {
      COMBOBOXINFO info{};
      info.cbSize = sizeof info;
      if (GetComboBoxInfo(combo, &info) && info.hwndList != nullptr) {
        MakeRightToLeft(info.hwndList);
      }
    }
  }
  model_.Fill();
  ShowRowCount();
  ShowSelectionState();
  return TRUE;
}

void SiteListDialog::InsertColumns() {
  int index = 0;
  for (const SiteListColumn& column : model_.design().columns) {
    std::wstring text = GetText(column.heading).value_or(L"");
    LVCOLUMNW header{};
    header.mask = LVCF_FMT | LVCF_TEXT | LVCF_WIDTH;
    header.fmt = LVCFMT_LEFT;
    header.cx = ScaledPixels(window_, column.width);
    header.pszText = text.data();
    SendMessageW(list_, LVM_INSERTCOLUMNW, index++, reinterpret_cast<LPARAM>(&header));
  }
}

void SiteListDialog::OnCommand(int controlId, int code) {
  if (controlId == IDC_SITE_LIST_CLOSE || controlId == IDCANCEL) {
    EndDialog(window_, 0);
    return;
  }
  if (code == BN_CLICKED && controlId == IDC_SITE_LIST_ADD) {
    OnAdd();
    return;
  }
  if (code == BN_CLICKED && controlId == IDC_SITE_LIST_REMOVE) {
    OnRemove();
    return;
  }
  if (code != CBN_SELCHANGE) return;
  const std::vector<SiteListCombo>& combos = model_.design().combos;
  for (size_t combo = 0; combo < combos.size(); ++combo) {
    if (combos[combo].controlId == controlId) OnChoiceChanged(combo);
  }
}

bool SiteListDialog::OnNotify(const NMHDR& header, LRESULT& result) {
  if (header.hwndFrom != list_) return false;
  switch (header.code) {
    case LVN_GETDISPINFOW:
      SupplyText(*reinterpret_cast<NMLVDISPINFOW*>(const_cast<NMHDR*>(&header)));
      return true;
    case LVN_ITEMCHANGED: {
      const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
      const bool selectionChanged = (change.uChanged & LVIF_STATE) != 0 &&
                                    ((change.uNewState ^ change.uOldState) & LVIS_SELECTED) != 0;
      if (selectionChanged && !changingSelection_) ShowSelectionState();
      return true;
    }
    case LVN_ODFINDITEMW:
      result = FindRow(*reinterpret_cast<const NMLVFINDITEMW*>(&header));
      return true;
    case LVN_ODSTATECHANGED:
      if (!changingSelection_) ShowSelectionState();
      return true;
    default:
      return false;
  }
}

LRESULT SiteListDialog::FindRow(const NMLVFINDITEMW& find) {
  // The list holds no rows of its own, so typing a site's first letters comes here.
  if ((find.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) == 0 || find.lvfi.psz == nullptr) return -1;
  std::optional<std::string> text = ToUtf8(find.lvfi.psz);
  if (!text) return -1;
  std::vector<std::string> names;
  names.reserve(model_.RowCount());
  for (size_t row = 0; row < model_.RowCount(); ++row) names.push_back(model_.SiteAt(row));
  const SiteRowSearch search{std::move(*text), (find.lvfi.flags & LVFI_PARTIAL) == 0,
                             (find.lvfi.flags & LVFI_WRAP) != 0};
  const size_t start = find.iStart < 0 ? 0 : static_cast<size_t>(find.iStart);
  std::optional<size_t> row = FindSiteRow(
      names, start, search, [this](const std::string& name) { return system_.FoldCase(name); });
  return row ? static_cast<LRESULT>(*row) : -1;
}

void SiteListDialog::ShowRowCount() {
  SendMessageW(list_, LVM_SETITEMCOUNT, model_.RowCount(), 0);
  InvalidateRect(list_, nullptr, TRUE);
}

void SiteListDialog::SupplyText(NMLVDISPINFOW& info) {
  LVITEMW& item = info.item;
  if ((item.mask & LVIF_TEXT) == 0 || item.pszText == nullptr || item.cchTextMax <= 0) return;
  item.pszText[0] = L'\0';
  if (item.iItem < 0 || static_cast<size_t>(item.iItem) >= model_.RowCount()) return;
  // The list copies the text before it asks for the next one, so one buffer serves every row.
  cellText_ = ToUtf16(model_.CellText(static_cast<size_t>(item.iItem), item.iSubItem))
                  .value_or(std::wstring());
  size_t length = std::min(cellText_.size(), static_cast<size_t>(item.cchTextMax - 1));
  std::copy_n(cellText_.c_str(), length, item.pszText);
  item.pszText[length] = L'\0';
}

std::vector<size_t> SiteListDialog::SelectedRows() {
  std::vector<size_t> rows;
  int row = -1;
  while ((row = static_cast<int>(SendMessageW(list_, LVM_GETNEXTITEM, row, LVNI_SELECTED))) >= 0) {
    rows.push_back(static_cast<size_t>(row));
  }
  return rows;
}

void SiteListDialog::SelectRows(const std::vector<size_t>& rows) {
  LVITEMW state{};
  state.stateMask = LVIS_SELECTED;
  state.state = 0;
  SendMessageW(list_, LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&state));
  state.state = LVIS_SELECTED;
  for (size_t row : rows) {
    SendMessageW(list_, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&state));
  }
}

void SiteListDialog::ShowSelectionState() {
  const std::vector<size_t> selected = SelectedRows();
  const std::vector<SiteChoice> choices = model_.CommonChoices(selected);
  for (size_t combo = 0; combo < combos_.size(); ++combo) {
    SendMessageW(combos_[combo], CB_SETCURSEL, ComboItemForChoice(choices[combo]), 0);
  }
  const bool anySelected = !selected.empty();
  SetEnabledMovingFocus(removeButton_, anySelected);
  for (HWND combo : combos_) SetEnabledMovingFocus(combo, anySelected);
}

void SiteListDialog::SetEnabledMovingFocus(HWND control, bool enabled) {
  // A control that is disabled while it has the focus would leave the keyboard nowhere.
  if (!enabled && GetFocus() == control) {
    SetFocus(GetNextDlgTabItem(window_, control, FALSE));
  }
  EnableWindow(control, enabled ? TRUE : FALSE);
}

void SiteListDialog::OnAdd() {
  AddSitePrompts prompts(system_, strings_, window_);
  SiteListModel::AddOutcome outcome = model_.AddFromUser(prompts);
  if (!outcome.confirmed) return;
  changingSelection_ = true;
  ShowRowCount();
  SelectRows({});
  if (outcome.row) {
    const int row = static_cast<int>(*outcome.row);
    SetFocus(list_);
    LVITEMW state{};
    state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    state.state = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageW(list_, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&state));
    SendMessageW(list_, LVM_ENSUREVISIBLE, row, FALSE);
  }
  changingSelection_ = false;
  ShowSelectionState();
}

void SiteListDialog::OnRemove() {
  const std::vector<size_t> selected = SelectedRows();
  if (selected.empty()) return;
  const std::vector<size_t> stayed = model_.RemoveRows(selected);
  changingSelection_ = true;
  ShowRowCount();
  SelectRows(stayed);
  changingSelection_ = false;
  ShowSelectionState();
}

void SiteListDialog::OnChoiceChanged(size_t comboIndex) {
  const SiteChoice choice =
      ChoiceForComboItem(static_cast<int>(SendMessageW(combos_[comboIndex], CB_GETCURSEL, 0, 0)));
  const std::vector<size_t> selected = SelectedRows();
  if (choice == kChoiceNone || selected.empty()) return;
  model_.ApplyChoice(comboIndex, choice, selected);
  SendMessageW(list_, LVM_REDRAWITEMS, selected.front(), selected.back());
  UpdateWindow(list_);
}
