#pragma once

// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <cstddef>
#include <optional>
#include <vector>

#include "app/modal_dialog.h"
#include "dialogs/site_list_logic.h"

class SMSettingsManager;

// The settings-by-site list shared by the storage, camera and microphone, and peer-assisted
// networking dialogs. The list view holds no rows of its own (owner data): it asks for the
// texts of the rows it draws, so even a very long list appears at once, in the order a sorted
// list view would give it.
// It runs until Close or Escape.
class SiteListDialog : public SMModalDialog {
 public:
  SiteListDialog(SiteListKind kind, SMSystem& system, SMStringTable& strings,
                 SMSettingsManager& settings);

 protected:
  void SetMoreTexts() override;
  LRESULT OnStart() override;
  bool OnDialogMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
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
  StorageBySiteDialog(SMSystem& system, SMStringTable& strings, SMSettingsManager& settings)
      : SiteListDialog(SiteListKind::kStorage, system, strings, settings) {}
};

class CameraMicBySiteDialog : public SiteListDialog {
 public:
  CameraMicBySiteDialog(SMSystem& system, SMStringTable& strings, SMSettingsManager& settings)
      : SiteListDialog(SiteListKind::kCameraMic, system, strings, settings) {}
};

class PeerNetworkingBySiteDialog : public SiteListDialog {
 public:
  PeerNetworkingBySiteDialog(SMSystem& system, SMStringTable& strings, SMSettingsManager& settings)
      : SiteListDialog(SiteListKind::kPeerNetworking, system, strings, settings) {}
};
