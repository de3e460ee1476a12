#include "pages/advanced_page.h"

#include "app/message_box_prompts.h"
#include "dialogs/clear_data_dialog.h"
#include "dialogs/trusted_locations_dialog.h"
#include "pages/advanced_logic.h"
#include "pages/advanced_page_ids.h"

namespace {

constexpr SMControlText kCaptions[] = {
    {IDC_BROWSING_DATA_HEADING, TextId::kBrowsingDataHeading},
    {IDC_BROWSING_DATA_EXPLANATION, TextId::kBrowsingDataExplanation},
    {IDC_ADVANCED_DELETE_ALL, TextId::kDeleteAll},
    {IDC_DEVELOPER_HEADING, TextId::kDeveloperHeading},
    {IDC_DEVELOPER_EXPLANATION, TextId::kDeveloperExplanation},
    {IDC_TRUSTED_LOCATIONS, TextId::kTrustedLocationSettings},
    {IDC_PROTECTED_HEADING, TextId::kProtectedContentHeading},
    {IDC_PROTECTED_EXPLANATION, TextId::kProtectedContentExplanation},
    {IDC_DEAUTHORIZE, TextId::kDeauthorizeComputer},
};

constexpr SMHelpLink kLinks[] = {
    {IDC_PROTECTED_HELP_LINK, TextId::kProtectedContentLink, TextId::kProtectedContentUrl},
};

}  // namespace

AdvancedPage::AdvancedPage(const SMAppObjects& objects)
    : SettingsPage(IDD_ADVANCED_PAGE, objects, {kCaptions, kLinks}) {}

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
