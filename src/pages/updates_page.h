#pragma once

#include "app/settings_page.h"

// The Updates tab: the update mode of the administrator file and the installed versions.
class UpdatesPage : public SettingsPage {
 public:
  explicit UpdatesPage(const SMAppObjects& objects);
  void RefreshFromSettings() override;

 protected:
  void SetMoreTexts() override;
  bool OnButtonClicked(int controlId) override;

 private:
  // The installed versions, the lines that do not apply, and what the user may change.
  void ShowPlayersAndState();

  // The mode the administrator file holds; -1 while no radio is checked.
  int mode_ = 1;
};
