#include "dialogs/add_site_dialog.h"

#include "dialogs/add_site_ids.h"
#include "dialogs/site_list_logic.h"
#include "layout/dialog_layout.h"

AddSiteDialog::AddSiteDialog(SMSystem& system, SMStringTable& strings, bool rightToLeft,
                             std::wstring title, std::wstring prompt)
    : SMDialogObject(system, strings),
      rightToLeft_(rightToLeft),
      prompt_(std::move(prompt)),
      title_(std::move(title)) {}

bool AddSiteDialog::OnMessage(UINT message, WPARAM wParam, LPARAM, LRESULT& result) {
  switch (message) {
    case WM_INITDIALOG:
      Initialise();
      // The focus is already in the domain field.
      result = FALSE;
      return true;
    case WM_COMMAND:
      OnCommand(LOWORD(wParam), HIWORD(wParam));
      result = 0;
      return true;
    default:
      return false;
  }
}

void AddSiteDialog::Initialise() {
  domainEdit_ = GetDlgItem(window_, IDC_ADD_SITE_DOMAIN);
  choiceCombo_ = GetDlgItem(window_, IDC_ADD_SITE_CHOICE);
  okButton_ = GetDlgItem(window_, IDOK);
  cancelButton_ = GetDlgItem(window_, IDCANCEL);
  if (rightToLeft_) MakeRightToLeft(window_);
  SetWindowTextW(window_, title_.c_str());
  SetControlText(IDC_ADD_SITE_DOMAIN_LABEL, 91000);
  SetWindowTextW(GetDlgItem(window_, IDC_ADD_SITE_PROMPT), prompt_.c_str());
  SetControlText(IDOK, 11004);
  SetControlText(IDCANCEL, 11001);
  for (SiteChoice item : {kChoiceAsk, kChoiceAllow, kChoiceBlock}) {
    std::optional<std::wstring> text = GetText(ChoiceItemTextId(item));
    SendMessageW(choiceCombo_, CB_ADDSTRING, 0,
                 reinterpret_cast<LPARAM>(text ? text->c_str() : L""));
  }
  SendMessageW(choiceCombo_, CB_SETCURSEL, 0, 0);
  choice_ = kChoiceAsk;
  FitDialogToTexts(window_);
  EnableWindow(okButton_, FALSE);
  SetFocus(domainEdit_);
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
