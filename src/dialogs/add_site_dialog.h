#pragma once

#include <optional>
#include <string>

#include "app/modal_dialog.h"
#include "settings/site_permissions.h"

// The small dialog in which the user types a website and picks what it may do. It knows
// nothing of settings: it hands back the text exactly as typed and the choice. Its end codes
// are deliberately the reverse of the usual ones: 0 when Add was pressed, 1 on Cancel.
class AddSiteDialog : public SMModalDialog {
 public:
  AddSiteDialog(SMSystem& system, SMStringTable& strings, TextId title, TextId prompt);

  // Set when Add was pressed.
  const std::optional<std::wstring>& resultDomain() const { return resultDomain_; }
  SiteChoice choice() const { return choice_; }

 protected:
  void SetMoreTexts() override;
  LRESULT OnStart() override;
  bool OnDialogMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  void OnCommand(int controlId, int code);

  TextId title_;
  TextId prompt_;
  HWND domainEdit_ = nullptr;
  HWND choiceCombo_ = nullptr;
  HWND okButton_ = nullptr;
  std::optional<std::wstring> resultDomain_;
  SiteChoice choice_ = kChoiceAsk;
};
