#pragma once

#include <optional>
#include <string>

#include "app/dialog_object.h"
#include "settings/site_permissions.h"

// The small dialog in which the user types a website and picks what it may do. It knows
// nothing of settings: it hands back the text exactly as typed and the choice. Its end codes
// are deliberately the reverse of the usual ones: 0 when Add was pressed, 1 on Cancel.
class AddSiteDialog : public SMDialogObject {
 public:
  AddSiteDialog(SMSystem& system, SMStringTable& strings, bool rightToLeft, std::wstring title,
                std::wstring prompt);

  // Set when Add was pressed.
  const std::optional<std::wstring>& resultDomain() const { return resultDomain_; }
  SiteChoice choice() const { return choice_; }

 protected:
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  void Initialise();
  void OnCommand(int controlId, int code);

  bool rightToLeft_;
  HWND domainEdit_ = nullptr;
  HWND choiceCombo_ = nullptr;
  HWND okButton_ = nullptr;
  HWND cancelButton_ = nullptr;
  std::optional<std::wstring> resultDomain_;
  std::wstring prompt_;
  std::wstring title_;
  SiteChoice choice_ = kChoiceAsk;
};
