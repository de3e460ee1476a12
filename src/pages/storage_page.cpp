#include "pages/storage_page.h"

#include "dialogs/clear_data_dialog.h"
#include "dialogs/site_list_dialog.h"
#include "pages/storage_logic.h"
#include "pages/storage_page_ids.h"

StoragePage::StoragePage(const SMAppObjects& objects) : SettingsPage(IDD_STORAGE_PAGE, objects) {}

void StoragePage::SetTexts() {
  SetControlText(IDC_STORAGE_HEADING, 21001);
  SetControlText(IDC_STORAGE_EXPLANATION, 21002);
  SetControlText(IDC_STORAGE_ALLOW, 21004);
  SetControlText(IDC_STORAGE_ASK, 21005);
  SetControlText(IDC_STORAGE_BLOCK, 21006);
  SetControlText(IDC_STORAGE_BY_SITE, 21007);
  // "Delete All…", not the template's caption.
  SetControlText(IDC_STORAGE_DELETE_ALL, 11006);
  SetControlText(IDC_PRIVATE_BROWSING_HEADING, 21300);
  SetControlText(IDC_PRIVATE_BROWSING_EXPLANATION, 21301);
  SetControlLink(IDC_STORAGE_PRIVACY_LINK, 21106);
  SetControlLink(IDC_PRIVATE_BROWSING_LINK, 21302);
  SetNoticeTexts();
}

void StoragePage::RefreshFromSettings() {
  index_ = ReadStorageIndex(objects_.settings);
  WriteRadioGroup(IDC_STORAGE_ALLOW, index_);
}

bool StoragePage::OnButtonClicked(int controlId) {
  switch (controlId) {
    case IDC_STORAGE_ALLOW:
    case IDC_STORAGE_ASK:
    case IDC_STORAGE_BLOCK: {
      const int previous = index_;
      index_ =
          ApplyStorageChoice(objects_.settings, *this, previous, ReadRadioGroup(IDC_STORAGE_ALLOW));
      WriteRadioGroup(IDC_STORAGE_ALLOW, index_);
      return true;
    }
    case IDC_STORAGE_BY_SITE: {
      StorageBySiteDialog dialog(objects_.system, objects_.strings, objects_.settings,
                                 IsRightToLeftUser(objects_.system));
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

uint32_t StoragePage::LinkUrlId(int controlId) {
  switch (controlId) {
    case IDC_STORAGE_PRIVACY_LINK:
      return 13000;
    case IDC_PRIVATE_BROWSING_LINK:
      return 13004;
    default:
      return SettingsPage::LinkUrlId(controlId);
  }
}
