#pragma once

// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <cstddef>
#include <optional>
#include <vector>

#include "app/dialog_object.h"
#include "dialogs/site_list_logic.h"

class SMSettingsManager;

// The settings-by-site list shared by the storage, camera and microphone, and peer-assisted
// networking dialogs. The list view holds no rows of its own (owner data): it asks for the
// texts of the rows it draws, so even a very long list appears at once, in the order a sorted
// list view would give it.
class SiteListDialog : public SMDialogObject {
 public:
  SiteListDialog(SiteListKind kind, SMSystem& system, SMStringTable& strings,
                 SMSettingsManager& settings, bool rightToLeft);

  // Runs the dialog over the active window until Close or Escape.
  INT_PTR Run();

  std::optional<SMAddSiteAnswer> RunAddSite(uint32_t titleId, uint32_t promptId) override;

 protected:
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  void Initialise();
  void InsertColumns();
  void OnCommand(int controlId, int code);
  bool OnNotify(const NMHDR& header, LRESULT& result);
  // The row a type-ahead search of the list view finds, or -1.
  LRESULT FindRow(const NMLVFINDITEMW& find);
  void ShowRowCount();
  void SupplyText(NMLVDISPINFOW& info);
  std::vector<size_t> SelectedRows();
  // Selects exactly these rows (none when empty).
  void SelectRows(const std::vector<size_t>& rows);
  void ShowSelectionState();
  void SetEnabledMovingFocus(HWND control, bool enabled);
  void OnAdd();
  void OnRemove();
  void OnChoiceChanged(size_t comboIndex);

  SiteListModel model_;
  bool rightToLeft_;
  HWND list_ = nullptr;
  std::vector<HWND> combos_;
  HWND addButton_ = nullptr;
  HWND removeButton_ = nullptr;
  HWND closeButton_ = nullptr;
  // Selection changes made by the dialog itself are shown once, when it is done.
  bool changingSelection_ = false;
  std::wstring cellText_;
};

class StorageBySiteDialog : public SiteListDialog {
 public:
  StorageBySiteDialog(SMSystem& system, SMStringTable& strings, SMSettingsManager& settings,
                      bool rightToLeft)
      : SiteListDialog(SiteListKind::kStorage, system, strings, settings, rightToLeft) {}
};

class CameraMicBySiteDialog : public SiteListDialog {
 public:
  CameraMicBySiteDialog(SMSystem& system, SMStringTable& strings, SMSettingsManager& settings,
                        bool rightToLeft)
      : SiteListDialog(SiteListKind::kCameraMic, system, strings, settings, rightToLeft) {}
};

class PeerNetworkingBySiteDialog : public SiteListDialog {
 public:
  PeerNetworkingBySiteDialog(SMSystem& system, SMStringTable& strings, SMSettingsManager& settings,
                             bool rightToLeft)
      : SiteListDialog(SiteListKind::kPeerNetworking, system, strings, settings, rightToLeft) {}
};
