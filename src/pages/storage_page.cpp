#include "pages/storage_page.h"

#include "app/message_box_prompts.h"
#include "app/radio_group.h"
#include "dialogs/clear_data_dialog.h"
#include "dialogs/site_list_dialog.h"
#include "pages/storage_logic.h"
#include "pages/storage_page_ids.h"

namespace {

constexpr SMControlText kCaptions[] = {
    {IDC_STORAGE_HEADING, TextId::kStorageHeading},
    {IDC_STORAGE_EXPLANATION, TextId::kStorageExplanation},
    {IDC_STORAGE_ALLOW, TextId::kStorageAllow},
    {IDC_STORAGE_ASK, TextId::kStorageAsk},
    {IDC_STORAGE_BLOCK, TextId::kStorageBlock},
    {IDC_STORAGE_BY_SITE, TextId::kStorageBySite},
    // "Delete All…", not the template's caption.
    {IDC_STORAGE_DELETE_ALL, TextId::kDeleteAll},
    {IDC_PRIVATE_BROWSING_HEADING, TextId::kPrivateBrowsingHeading},
    {IDC_PRIVATE_BROWSING_EXPLANATION, TextId::kPrivateBrowsingExplanation},
};

constexpr SMHelpLink kLinks[] = {
    {IDC_STORAGE_PRIVACY_LINK, TextId::kPrivacyControlsLink, TextId::kPrivacyControlsUrl},
    {IDC_PRIVATE_BROWSING_LINK, TextId::kPrivateBrowsingLink, TextId::kPrivateBrowsingUrl},
};

}  // namespace

StoragePage::StoragePage(const SMAppObjects& objects)
    : SettingsPage(IDD_STORAGE_PAGE, objects, {kCaptions, kLinks}) {}

void StoragePage::RefreshFromSettings() {
  index_ = ReadStorageIndex(objects_.settings);
  WriteRadioGroup(window_, IDC_STORAGE_ALLOW, index_);
}

bool StoragePage::OnButtonClicked(int controlId) {
  switch (controlId) {
    case IDC_STORAGE_ALLOW:
    case IDC_STORAGE_ASK:
    case IDC_STORAGE_BLOCK: {
      const int previous = index_;
      SMMessageBoxPrompts prompts(objects_.system, objects_.strings, window_);
      index_ = ApplyStorageChoice(objects_.settings, prompts, previous,
                                  ReadRadioGroup(window_, IDC_STORAGE_ALLOW));
      WriteRadioGroup(window_, IDC_STORAGE_ALLOW, index_);
      return true;
    }
    case IDC_STORAGE_BY_SITE: {
      StorageBySiteDialog dialog(objects_.system, objects_.strings, objects_.settings);
      dialog.Run();
      RefreshFromSettings();
      return true;
    }
    case IDC_STORAGE_DELETE_ALL:
      ClearDataDialog(objects_).Run();
      return true;
    default:
      return SettingsPage::OnButtonClicked(controlId);
  }
}
