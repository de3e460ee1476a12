#include "pages/advanced_page.h"

#include "app/message_box_prompts.h"
#include "dialogs/clear_data_dialog.h"
#include "dialogs/trusted_locations_dialog.h"
#include "pages/advanced_logic.h"
#include "pages/advanced_page_ids.h"

AdvancedPage::AdvancedPage(const SMAppObjects& objects)
    : SettingsPage(IDD_ADVANCED_PAGE, objects) {}

void AdvancedPage::SetTexts() {
  SetControlText(IDC_BROWSING_DATA_HEADING, TextId::kBrowsingDataHeading);
  SetControlText(IDC_BROWSING_DATA_EXPLANATION, TextId::kBrowsingDataExplanation);
  SetControlText(IDC_ADVANCED_DELETE_ALL, TextId::kDeleteAll);
  SetControlText(IDC_DEVELOPER_HEADING, TextId::kDeveloperHeading);
  SetControlText(IDC_DEVELOPER_EXPLANATION, TextId::kDeveloperExplanation);
  SetControlText(IDC_TRUSTED_LOCATIONS, TextId::kTrustedLocationSettings);
  SetControlText(IDC_PROTECTED_HEADING, TextId::kProtectedContentHeading);
  SetControlText(IDC_PROTECTED_EXPLANATION, TextId::kProtectedContentExplanation);
  SetControlText(IDC_DEAUTHORIZE, TextId::kDeauthorizeComputer);
  SetControlLink(IDC_PROTECTED_HELP_LINK, TextId::kProtectedContentLink);
  SetNoticeTexts();
}

std::optional<TextId> AdvancedPage::LinkUrlId(int controlId) {
  return controlId == IDC_PROTECTED_HELP_LINK ? TextId::kProtectedContentUrl
                                              : SettingsPage::LinkUrlId(controlId);
}

bool AdvancedPage::OnButtonClicked(int controlId) {
  switch (controlId) {
    case IDC_ADVANCED_DELETE_ALL:
      ClearDataDialog(objects_).Run();
      return true;
    case IDC_TRUSTED_LOCATIONS:
      TrustedLocationsDialog(objects_.system, objects_.strings, objects_.settings).Run();
      return true;
    case IDC_DEAUTHORIZE: {
      SMMessageBoxPrompts prompts(objects_.system, objects_.strings, window_);
      DeauthorizeComputer(prompts, objects_.privateData);
      return true;
    }
    default:
      return SettingsPage::OnButtonClicked(controlId);
  }
}
