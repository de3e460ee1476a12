#include "pages/updates_page.h"

#include <commctrl.h>

#include <utility>

#include "app/radio_group.h"
#include "pages/updates_logic.h"
#include "pages/updates_page_ids.h"
#include "platform/update_service.h"
#include "platform/win32/utf16.h"

namespace {

constexpr int kVersionLineIds[] = {IDC_ACTIVEX_VERSION_LABEL, IDC_ACTIVEX_VERSION,
                                   IDC_NPAPI_VERSION_LABEL,   IDC_NPAPI_VERSION,
                                   IDC_PPAPI_VERSION_LABEL,   IDC_PPAPI_VERSION};

void SetVersion(HWND page, int controlId, const std::optional<std::string>& version) {
  if (!version) return;  // keeps "Not installed"
  std::optional<std::wstring> text = ToUtf16(*version);
  if (text) SetWindowTextW(GetDlgItem(page, controlId), text->c_str());
}

// Moves a control up by the height of one version line.
void MoveUp(HWND page, int controlId, int pixels) {
  HWND control = GetDlgItem(page, controlId);
  RECT bounds{};
  GetWindowRect(control, &bounds);
  MapWindowPoints(nullptr, page, reinterpret_cast<POINT*>(&bounds), 2);
  if (bounds.left > bounds.right) std::swap(bounds.left, bounds.right);
  MoveWindow(control, bounds.left, bounds.top - pixels, bounds.right - bounds.left,
             bounds.bottom - bounds.top, TRUE);
}

// The versions say "Not installed" until the players are found.
constexpr SMControlText kCaptions[] = {
    {IDC_UPDATES_HEADING, TextId::kUpdatesTitle},
    {IDC_UPDATES_EXPLANATION, TextId::kUpdatesExplanation},
    {IDC_UPDATES_AUTOMATIC, TextId::kUpdatesAutomatic},
    {IDC_UPDATES_NOTIFY, TextId::kUpdatesNotify},
    {IDC_UPDATES_NEVER, TextId::kUpdatesNever},
    {IDC_UPDATES_CHANGE, TextId::kUpdatesChange},
    {IDC_UPDATES_CHECK_NOW, TextId::kUpdatesCheckNow},
    {IDC_ACTIVEX_VERSION_LABEL, TextId::kActiveXVersionLabel},
    {IDC_NPAPI_VERSION_LABEL, TextId::kNpapiVersionLabel},
    {IDC_PPAPI_VERSION_LABEL, TextId::kPpapiVersionLabel},
    {IDC_ACTIVEX_VERSION, TextId::kVersionNotInstalled},
    {IDC_NPAPI_VERSION, TextId::kVersionNotInstalled},
    {IDC_PPAPI_VERSION, TextId::kVersionNotInstalled},
};

}  // namespace

UpdatesPage::UpdatesPage(const SMAppObjects& objects)
    : SettingsPage(IDD_UPDATES_PAGE, objects, {kCaptions, {}}) {}

void UpdatesPage::SetMoreTexts() {
  SendMessageW(GetDlgItem(window_, IDC_UPDATES_CHANGE), BCM_SETSHIELD, 0, 1);
  // The versions and the hidden lines are known before the layout fits the page.
  ShowPlayersAndState();
}

void UpdatesPage::RefreshFromSettings() {
  mode_ = ReadUpdateMode(objects_.adminConfig);
  WriteRadioGroup(window_, IDC_UPDATES_AUTOMATIC, mode_);
}

bool UpdatesPage::OnButtonClicked(int controlId) {
  switch (controlId) {
    case IDC_UPDATES_AUTOMATIC:
    case IDC_UPDATES_NOTIFY:
    case IDC_UPDATES_NEVER: {
      const int previous = mode_;
      mode_ = ApplyUpdatesChoice(objects_.system, &objects_.adminConfig, previous,
                                 ReadRadioGroup(window_, IDC_UPDATES_AUTOMATIC));
      WriteRadioGroup(window_, IDC_UPDATES_AUTOMATIC, mode_);
      return true;
    }
    case IDC_UPDATES_CHANGE:
      RelaunchElevated(objects_.system);
      return true;
    case IDC_UPDATES_CHECK_NOW:
      // The vendor's update page; a missing address still makes the same call, with no target.
      objects_.system.OpenUrl(window_, objects_.strings.GetString(TextId::kUpdatesWebPageUrl));
      return true;
    default:
      return SettingsPage::OnButtonClicked(controlId);
  }
}

void UpdatesPage::ShowPlayersAndState() {
  UpdatesView view = ComputeUpdatesView(GatherUpdatesFacts(objects_.system, objects_.adminConfig));
  SetVersion(window_, IDC_ACTIVEX_VERSION, view.activeXVersion);
  SetVersion(window_, IDC_NPAPI_VERSION, view.npapiVersion);
  SetVersion(window_, IDC_PPAPI_VERSION, view.ppapiVersion);
  if (!view.showActiveXLine) {
    ShowWindow(GetDlgItem(window_, IDC_ACTIVEX_VERSION_LABEL), SW_HIDE);
    ShowWindow(GetDlgItem(window_, IDC_ACTIVEX_VERSION), SW_HIDE);
    RECT line{0, 0, 0, 10};
    MapDialogRect(window_, &line);
    for (int id :
         {IDC_NPAPI_VERSION_LABEL, IDC_NPAPI_VERSION, IDC_PPAPI_VERSION_LABEL, IDC_PPAPI_VERSION}) {
      MoveUp(window_, id, line.bottom);
    }
  }
  for (int id : {IDC_UPDATES_AUTOMATIC, IDC_UPDATES_NOTIFY, IDC_UPDATES_NEVER}) {
    EnableWindow(GetDlgItem(window_, id), view.radiosEnabled);
  }
  ShowWindow(GetDlgItem(window_, IDC_UPDATES_CHANGE), view.changeButtonVisible ? SW_SHOW : SW_HIDE);
  if (view.locked) {
    EnableWindow(GetDlgItem(window_, IDC_UPDATES_HEADING), FALSE);
    EnableWindow(GetDlgItem(window_, IDC_UPDATES_EXPLANATION), FALSE);
    EnableWindow(GetDlgItem(window_, IDC_UPDATES_CHECK_NOW), FALSE);
    for (int id : kVersionLineIds) EnableWindow(GetDlgItem(window_, id), FALSE);
  }
}
