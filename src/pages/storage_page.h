#pragma once

#include "app/settings_page.h"

// The Storage tab: the default local-storage policy and the private-browsing help.
class StoragePage : public SettingsPage {
 public:
  explicit StoragePage(const SMAppObjects& objects);
  void RefreshFromSettings() override;

 protected:
  void SetTexts() override;
  uint32_t LinkUrlId(int controlId) override;
};
