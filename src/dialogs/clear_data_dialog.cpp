#include "dialogs/clear_data_dialog.h"

#include <commctrl.h>

#include "app/page_text.h"
#include "dialogs/clear_data_ids.h"
#include "layout/dialog_layout.h"

namespace {

// What the dialog's result means to the pages: nothing, it is always the same.
constexpr INT_PTR kClearDataEndCode = 1;
constexpr uint32_t kPrivacyControlsUrlId = 13000;

}  // namespace

ClearDataDialog::ClearDataDialog(const SMAppObjects& objects)
    : SMDialogObject(objects.system, objects.strings), objects_(objects) {}

void ClearDataDialog::Run() {
  RunModal(IDD_CLEAR_DATA, GetActiveWindow());
}

void ClearDataDialog::SetTexts() {
  std::optional<std::wstring> title = GetText(71000);
  SetWindowTextW(window_, title ? title->c_str() : L"");
  SetControlText(IDC_CLEAR_DATA_INTRO, 71001);
  SetControlText(IDC_CLEAR_SITE_DATA, 71002);
  SetControlText(IDC_CLEAR_LICENSES, 71007);
  SetControlText(IDC_CLEAR_LICENSES_EXPLANATION, 71008);
  SetControlText(IDC_CLEAR_DATA_HISTORY_NOTE, 71009);
  SetControlText(IDC_CLEAR_DATA_CANCEL, 11001);
  SetControlText(IDC_CLEAR_DATA_DELETE, 11007);

  // Three sentences as one paragraph, then the privacy-controls link on its own.
  std::wstring explanation;
  for (uint32_t id : {71004u, 71005u, 71006u}) {
    std::optional<std::wstring> sentence = GetText(id);
    if (!sentence) continue;
    if (!explanation.empty()) explanation += L' ';
    explanation += *sentence;
  }
  std::optional<std::wstring> caption = explanation;
  std::optional<std::wstring> link = GetText(21106);
  if (WrapLink(link)) AppendParagraph(caption, link);
  SetWindowTextW(GetDlgItem(window_, IDC_CLEAR_SITE_DATA_LINK), caption->c_str());
}

bool ClearDataDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  switch (message) {
    case WM_INITDIALOG:
      if (IsRightToLeftUser(system_)) MakeRightToLeft(window_);
      SetTexts();
      CheckDlgButton(window_, IDC_CLEAR_SITE_DATA, ClampCheckState(siteDataState_));
      CheckDlgButton(window_, IDC_CLEAR_LICENSES, ClampCheckState(licenceState_));
      FitDialogToTexts(window_);
      result = TRUE;
      return true;
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
      OpenHelpLink(kPrivacyControlsUrlId);
      return true;
    }
    default:
      return false;
  }
}

void ClearDataDialog::DeleteData() {
  siteDataState_ = static_cast<int>(IsDlgButtonChecked(window_, IDC_CLEAR_SITE_DATA));
  licenceState_ = static_cast<int>(IsDlgButtonChecked(window_, IDC_CLEAR_LICENSES));
  ClearAllData(objects_.settings, objects_.platform, objects_.privateData, *this,
               RequestFromCheckStates(siteDataState_, licenceState_));
}
