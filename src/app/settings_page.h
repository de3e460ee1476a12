#pragma once

// clang-format off
#include <windows.h>
#include <prsht.h>
// clang-format on

#include <optional>
#include <string>

#include "app/app_startup.h"
#include "app/dialog_object.h"

// Base of the five pages of the sheet. A page re-reads what it shows every time it becomes the
// active tab; it never keeps a setting beyond its controls.
class SettingsPage : public SMDialogObject {
 public:
  SettingsPage(int templateId, const SMAppObjects& objects, SMDialogTexts texts);
  ~SettingsPage() override;

  // The descriptor handed to CreatePropertySheetPageW (first-version size).
  PROPSHEETPAGEW& descriptor() { return descriptor_; }
  // The tab shows this title instead of the template's caption.
  void SetTitle(std::wstring title);
  void SetRightToLeft(bool rightToLeft) { rightToLeft_ = rightToLeft; }
  bool rightToLeft() const { return rightToLeft_; }

  virtual void RefreshFromSettings() = 0;

 protected:
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  // Texts beyond the declared ones, set before the layout fits the page.
  virtual void SetMoreTexts() {}
  // Runs after the texts are fitted and the values shown (administrator locks, for instance).
  virtual void AfterInit() {}
  // A click on one of the page's buttons; false when the id is not the page's.
  virtual bool OnButtonClicked(int controlId);

  SMAppObjects objects_;
  bool rightToLeft_ = false;

 private:
  // The Chromium notice block at the bottom of the page, where its template has one.
  void SetNoticeTexts();
  bool OnNotify(const NMHDR& header, LRESULT& result);
  static UINT CALLBACK PageCallback(HWND window, UINT message, PROPSHEETPAGEW* page);

  // The activation that follows a page's creation finds the values its initialisation just
  // showed (with any administrator lock applied on top), so it is not refreshed again.
  bool justInitialised_ = false;
  PROPSHEETPAGEW descriptor_{};
  std::wstring title_;
  // The notice icon drawn at the screen's scale; the page's to destroy.
  HICON noticeIcon_ = nullptr;
};
