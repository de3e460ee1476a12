#pragma once

// clang-format off
#include <windows.h>
#include <prsht.h>
// clang-format on

#include <string>
#include <vector>

#include "app/settings_page.h"

// The property sheet: no OK, Cancel or Apply (every page writes at once); the user closes it
// with the caption's close button.
class SettingsSheet {
 public:
  SettingsSheet(std::wstring caption, bool rightToLeft);
  ~SettingsSheet();
  SettingsSheet(const SettingsSheet&) = delete;
  SettingsSheet& operator=(const SettingsSheet&) = delete;

  // False when the system refuses the page.
  bool AddPage(SettingsPage& page);
  void SetActivePage(int index);
  // The sheet's result; returns when the sheet is closed.
  INT_PTR RunModal(HWND parent);

  HWND window() const { return window_; }

 private:
  static int CALLBACK SheetCallback(HWND window, UINT message, LPARAM lParam);
  void OnInitialized(HWND window);

  std::wstring caption_;
  bool rightToLeft_;
  std::vector<HPROPSHEETPAGE> pages_;
  PROPSHEETHEADERW header_{};
  HWND window_ = nullptr;
};
