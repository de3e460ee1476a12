#pragma once

#include "app/settings_page.h"

// The Updates tab: the update mode of the administrator file and the installed versions.
class UpdatesPage : public SettingsPage {
 public:
  explicit UpdatesPage(const SMAppObjects& objects);
  void RefreshFromSettings() override;

 protected:
  void SetTexts() override;
  void AfterInit() override;
};
