#include "settings/setting_keys.h"

SettingValue DefaultValueOf(const SettingKey& key) {
  switch (key.type) {
    case kSettingNumber:
      return SettingValue::Number(key.name, key.numberDefault);
    case kSettingArray:
      return SettingValue::Array(key.name, SettingArray());
    default:
      return SettingValue::Boolean(key.name, key.booleanDefault);
  }
}

const SettingKey* FindSettingKey(SettingFile file, std::string_view name) {
  auto findIn = [&](const auto& keys) -> const SettingKey* {
    for (const SettingKey* key : keys) {
      if (key->file == file && name == key->name) return key;
    }
    return nullptr;
  };
  if (const SettingKey* key = findIn(kGlobalDefaults)) return key;
  if (file == SettingFile::kMaster && name == kKnownSites.name) return &kKnownSites;
  return findIn(kSiteDefaults);
}
