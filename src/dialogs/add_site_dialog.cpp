#include "dialogs/add_site_dialog.h"

#include "dialogs/add_site_ids.h"
#include "dialogs/site_list_logic.h"

namespace {

constexpr SMControlText kCaptions[] = {
    {IDC_ADD_SITE_DOMAIN_LABEL, TextId::kDomainLabel},
    {IDOK, TextId::kAdd},
    {IDCANCEL, TextId::kCancel},
};

}  // namespace

AddSiteDialog::AddSiteDialog(SMSystem& system, SMStringTable& strings, TextId title, TextId prompt)
    : SMModalDialog(system, strings, IDD_ADD_SITE, {kCaptions, {}}),
      title_(title),
      prompt_(prompt) {}

void AddSiteDialog::SetMoreTexts() {
  // Each list that opens this dialog names what is added.
  SetCaption(title_);
  SetControlText(IDC_ADD_SITE_PROMPT, prompt_);
  HWND combo = GetDlgItem(window_, IDC_ADD_SITE_CHOICE);
  for (SiteChoice item : {kChoiceAsk, kChoiceAllow, kChoiceBlock}) {
    std::optional<std::wstring> text = GetText(ChoiceItemTextId(item));
    SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text ? text->c_str() : L""));
  }
  SendMessageW(combo, CB_SETCURSEL, 0, 0);
}

LRESULT AddSiteDialog::OnStart() {
  domainEdit_ = GetDlgItem(window_, IDC_ADD_SITE_DOMAIN);
  choiceCombo_ = GetDlgItem(window_, IDC_ADD_SITE_CHOICE);
  okButton_ = GetDlgItem(window_, IDOK);
  choice_ = kChoiceAsk;
  EnableWindow(okButton_, FALSE);
  SetFocus(domainEdit_);
  // The focus is already in the domain field.
  return FALSE;
}

bool AddSiteDialog::OnDialogMessage(UINT message, WPARAM wParam, LPARAM, LRESULT& result) {
  if (message != WM_COMMAND) return false;
  OnCommand(LOWORD(wParam), HIWORD(wParam));
  result = 0;
  return true;
}

void AddSiteDialog::OnCommand(int controlId, int code) {
  if (controlId == IDOK) {
    // Taken exactly as typed: a single blank is a name too.
    int length = GetWindowTextLengthW(domainEdit_);
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(domainEdit_, text.data(), length + 1)));
    resultDomain_ = std::move(text);
    EndDialog(window_, 0);
  } else if (controlId == IDCANCEL) {
    EndDialog(window_, 1);
  } else if (controlId == IDC_ADD_SITE_DOMAIN && code == EN_CHANGE) {
    EnableWindow(okButton_, GetWindowTextLengthW(domainEdit_) > 0);
  } else if (controlId == IDC_ADD_SITE_CHOICE && code == CBN_SELCHANGE) {
    SiteChoice picked =
        ChoiceForComboItem(static_cast<int>(SendMessageW(choiceCombo_, CB_GETCURSEL, 0, 0)));
    if (picked != kChoiceNone) choice_ = picked;
  }
}
