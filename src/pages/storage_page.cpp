#include "pages/storage_page.h"

#include "app/message_box_prompts.h"
#include "app/radio_group.h"
#include "dialogs/clear_data_dialog.h"
#include "dialogs/site_list_dialog.h"
#include "pages/storage_logic.h"
#include "pages/storage_page_ids.h"

StoragePage::StoragePage(const SMAppObjects& objects) : SettingsPage(IDD_STORAGE_PAGE, objects) {}

void StoragePage::SetTexts() {
  SetControlText(IDC_STORAGE_HEADING, TextId::kStorageHeading);
  SetControlText(IDC_STORAGE_EXPLANATION, TextId::kStorageExplanation);
  SetControlText(IDC_STORAGE_ALLOW, TextId::kStorageAllow);
  SetControlText(IDC_STORAGE_ASK, TextId::kStorageAsk);
  SetControlText(IDC_STORAGE_BLOCK, TextId::kStorageBlock);
  SetControlText(IDC_STORAGE_BY_SITE, TextId::kStorageBySite);
  // "Delete All…", not the template's caption.
  SetControlText(IDC_STORAGE_DELETE_ALL, TextId::kDeleteAll);
  SetControlText(IDC_PRIVATE_BROWSING_HEADING, TextId::kPrivateBrowsingHeading);
  SetControlText(IDC_PRIVATE_BROWSING_EXPLANATION, TextId::kPrivateBrowsingExplanation);
  SetControlLink(IDC_STORAGE_PRIVACY_LINK, TextId::kPrivacyControlsLink);
  SetControlLink(IDC_PRIVATE_BROWSING_LINK, TextId::kPrivateBrowsingLink);
  SetNoticeTexts();
}

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

std::optional<TextId> StoragePage::LinkUrlId(int controlId) {
  switch (controlId) {
    case IDC_STORAGE_PRIVACY_LINK:
      return TextId::kPrivacyControlsUrl;
    case IDC_PRIVATE_BROWSING_LINK:
      return TextId::kPrivateBrowsingUrl;
    default:
      return SettingsPage::LinkUrlId(controlId);
  }
}
