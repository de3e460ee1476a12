#include "pages/advanced_page.h"

#include "dialogs/clear_data_dialog.h"
#include "dialogs/trusted_locations_dialog.h"
#include "pages/advanced_logic.h"
#include "pages/advanced_page_ids.h"

AdvancedPage::AdvancedPage(const SMAppObjects& objects)
    : SettingsPage(IDD_ADVANCED_PAGE, objects) {}

void AdvancedPage::SetTexts() {
  SetControlText(IDC_BROWSING_DATA_HEADING, 51100);
  SetControlText(IDC_BROWSING_DATA_EXPLANATION, 51101);
  SetControlText(IDC_ADVANCED_DELETE_ALL, 11006);
  SetControlText(IDC_DEVELOPER_HEADING, 51400);
  SetControlText(IDC_DEVELOPER_EXPLANATION, 51401);
  SetControlText(IDC_TRUSTED_LOCATIONS, 51402);
  SetControlText(IDC_PROTECTED_HEADING, 41100);
  SetControlText(IDC_PROTECTED_EXPLANATION, 41101);
  SetControlText(IDC_DEAUTHORIZE, 41103);
  SetControlLink(IDC_PROTECTED_HELP_LINK, 41102);
  SetNoticeTexts();
}

uint32_t AdvancedPage::LinkUrlId(int controlId) {
  return controlId == IDC_PROTECTED_HELP_LINK ? 13003 : SettingsPage::LinkUrlId(controlId);
}

bool AdvancedPage::OnButtonClicked(int controlId) {
  switch (controlId) {
    case IDC_ADVANCED_DELETE_ALL:
      ClearDataDialog(objects_).Run();
      return true;
    case IDC_TRUSTED_LOCATIONS:
      TrustedLocationsDialog(objects_).Run();
      return true;
    case IDC_DEAUTHORIZE:
      DeauthorizeComputer(*this, objects_.privateData);
      return true;
    default:
      return SettingsPage::OnButtonClicked(controlId);
  }
}
