#pragma once

#include <array>
#include <memory>

#include "app/app_startup.h"
#include "app/settings_page.h"
#include "app/settings_sheet.h"

// The entry's sheet frame on Windows: the real property sheet and the five page objects.
class Win32SheetFrame : public SMSheetFrame {
 public:
  ~Win32SheetFrame() override;
  void CreateSheet(const std::string& caption, bool rightToLeft) override;
  void CreatePage(SMPageKind kind, const SMAppObjects& objects, bool rightToLeft) override;
  void SetPageTitle(SMPageKind kind, const std::string& title) override;
  bool AddPage(SMPageKind kind) override;
  void SetStartPage(int index) override;
  void RunModal() override;
  void DestroyPagesAndSheet() override;

 private:
  std::unique_ptr<SettingsSheet> sheet_;
  std::array<std::unique_ptr<SettingsPage>, kPageKindCount> pages_;
};
