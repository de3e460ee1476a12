#pragma once

#include "app/settings_page.h"

// The Camera and Mic tab: ask or block camera and microphone use; an administrator can lock it.
class CameraMicPage : public SettingsPage {
 public:
  explicit CameraMicPage(const SMAppObjects& objects);
  void RefreshFromSettings() override;

 protected:
  void AfterInit() override;
  bool OnButtonClicked(int controlId) override;

 private:
  void ApplyAdministratorLock();
};
