#include "dialogs/clear_data_dialog.h"

#include <commctrl.h>

#include "app/message_box_prompts.h"
#include "app/page_text.h"
#include "dialogs/clear_data_ids.h"

namespace {

// What the dialog's result means to the pages: nothing, it is always the same.
constexpr INT_PTR kClearDataEndCode = 1;

constexpr SMControlText kCaptions[] = {
    {IDC_CLEAR_DATA_INTRO, TextId::kClearDataIntro},
    {IDC_CLEAR_SITE_DATA, TextId::kClearSiteData},
    {IDC_CLEAR_LICENSES, TextId::kClearLicences},
    {IDC_CLEAR_LICENSES_EXPLANATION, TextId::kClearLicencesExplanation},
    {IDC_CLEAR_DATA_HISTORY_NOTE, TextId::kClearDataHistoryNote},
    {IDC_CLEAR_DATA_CANCEL, TextId::kCancel},
    {IDC_CLEAR_DATA_DELETE, TextId::kDeleteData},
};

}  // namespace

ClearDataDialog::ClearDataDialog(const SMAppObjects& objects)
    : SMModalDialog(objects.system, objects.strings, IDD_CLEAR_DATA, {kCaptions, {}}),
      objects_(objects) {}

void ClearDataDialog::SetMoreTexts() {
  SetCaption(TextId::kClearDataTitle);

  // Three sentences as one paragraph, then the privacy-controls link on its own.
  std::wstring explanation;
  for (TextId id : {TextId::kClearSiteDataExplanation, TextId::kClearSiteDataStorageExplanation,
                    TextId::kClearSiteDataBySiteHint}) {
    std::optional<std::wstring> sentence = GetText(id);
    if (!sentence) continue;
    if (!explanation.empty()) explanation += L' ';
    explanation += *sentence;
  }
  std::optional<std::wstring> caption = explanation;
  std::optional<std::wstring> link = GetText(TextId::kPrivacyControlsLink);
  if (WrapLink(link)) AppendParagraph(caption, link);
  SetWindowTextW(GetDlgItem(window_, IDC_CLEAR_SITE_DATA_LINK), caption->c_str());
}

LRESULT ClearDataDialog::OnStart() {
  CheckDlgButton(window_, IDC_CLEAR_SITE_DATA, ClampCheckState(siteDataState_));
  CheckDlgButton(window_, IDC_CLEAR_LICENSES, ClampCheckState(licenceState_));
  return TRUE;
}

bool ClearDataDialog::OnDialogMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT&) {
  switch (message) {
    case WM_COMMAND:
      if (HIWORD(wParam) != BN_CLICKED) return false;
      switch (LOWORD(wParam)) {
        case IDC_CLEAR_DATA_DELETE:
          DeleteData();
          EndDialog(window_, kClearDataEndCode);
          return true;
        case IDC_CLEAR_DATA_CANCEL:
        case IDCANCEL:  // Escape and the close box
          EndDialog(window_, kClearDataEndCode);
          return true;
        default:
          return false;
      }
    case WM_NOTIFY: {
      const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
      if (header.idFrom != IDC_CLEAR_SITE_DATA_LINK ||
          (header.code != NM_CLICK && header.code != NM_RETURN)) {
        return false;
      }
      OpenHelpLink(TextId::kPrivacyControlsUrl);
      return true;
    }
    default:
      return false;
  }
}

void ClearDataDialog::DeleteData() {
  siteDataState_ = static_cast<int>(IsDlgButtonChecked(window_, IDC_CLEAR_SITE_DATA));
  licenceState_ = static_cast<int>(IsDlgButtonChecked(window_, IDC_CLEAR_LICENSES));
  SMMessageBoxPrompts prompts(system_, strings_, window_);
  ClearAllData(objects_.settings, objects_.platform, objects_.privateData, prompts,
               RequestFromCheckStates(siteDataState_, licenceState_));
}
