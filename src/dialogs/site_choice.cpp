#include "dialogs/site_choice.h"

#include "settings/settings_manager.h"

namespace {

const SettingValue* Boolean(SMSettingsManager& settings, const std::string& site,
                            const char* name) {
  const SettingValue* value = settings.GetValue(site, name);
  return value != nullptr && value->type() == kSettingBoolean ? value : nullptr;
}

}  // namespace

SiteChoice ReadPairChoice(SMSettingsManager& settings, const std::string& site,
                          BooleanPairKeys keys) {
  const SettingValue* always = Boolean(settings, site, keys.always);
  const SettingValue* allow = Boolean(settings, site, keys.allow);
  if (always == nullptr || allow == nullptr || !always->boolean()) return kChoiceAsk;
  return allow->boolean() ? kChoiceAllow : kChoiceBlock;
}

SiteChoice ReadStorageChoice(SMSettingsManager& settings, const std::string& site) {
  const SettingValue* limit = settings.GetValue(site, kStorageLimitKey);
  if (limit == nullptr || limit->type() != kSettingNumber) return kChoiceAllow;
  if (limit->number() == -1.0) return kChoiceBlock;
  if (limit->number() == 0.0) return kChoiceAsk;
  return kChoiceAllow;
}

bool WritePairChoice(SMSettingsManager& settings, const std::string& site, BooleanPairKeys keys,
                     SiteChoice choice) {
  bool always = choice == kChoiceAllow || choice == kChoiceBlock;
  bool allow = choice == kChoiceAllow;
  bool alwaysWritten = settings.SetValue(site, SettingValue::Boolean(keys.always, always));
  bool allowWritten = settings.SetValue(site, SettingValue::Boolean(keys.allow, allow));
  return alwaysWritten && allowWritten;
}

bool WriteStorageChoice(SMSettingsManager& settings, const std::string& site, SiteChoice choice) {
  return settings.SetValue(site,
                           SettingValue::Number(kStorageLimitKey, StorageLimitForChoice(choice)));
}

double StorageLimitForChoice(SiteChoice choice) {
  switch (choice) {
    case kChoiceAllow:
      return 100.0;
    case kChoiceBlock:
      return -1.0;
    default:
      return 0.0;
  }
}

uint32_t ChoiceWordId(SiteChoice choice) {
  switch (choice) {
    case kChoiceAllow:
      return 11102;
    case kChoiceBlock:
      return 11100;
    default:
      return 11101;
  }
}

uint32_t ChoiceItemId(SiteChoice choice) {
  // Only "Ask" has a longer text in the choice lists.
  return choice == kChoiceAllow || choice == kChoiceBlock ? ChoiceWordId(choice) : 11103;
}
