#pragma once

#include "app/settings_page.h"
#include "pages/storage_logic.h"

// The Storage tab: the default local-storage policy and the private-browsing help.
class StoragePage : public SettingsPage {
 public:
  explicit StoragePage(const SMAppObjects& objects);
  void RefreshFromSettings() override;

 protected:
  bool OnButtonClicked(int controlId) override;

 private:
  int index_ = kStorageAllow;
};
