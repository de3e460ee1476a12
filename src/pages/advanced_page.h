#pragma once

#include "app/settings_page.h"

// The Advanced tab: delete all data, trusted locations, deauthorise this computer.
class AdvancedPage : public SettingsPage {
 public:
  explicit AdvancedPage(const SMAppObjects& objects);
  // Nothing on this page shows a stored value.
  void RefreshFromSettings() override {}

 protected:
  bool OnButtonClicked(int controlId) override;
};
