#include "settings/site_permissions.h"

#include "settings/settings_manager.h"

BooleanPairKeys PairKeysOf(SitePermission permission) {
  switch (permission) {
    case SitePermission::kCameraOther:
      return {&kCameraAlways, &kCameraAllow};
    case SitePermission::kCameraSecure:
      return {&kCameraAlwaysSecure, &kCameraAllowSecure};
    case SitePermission::kPeerNetworking:
      return {&kPeerAlways, &kPeerAllow};
    case SitePermission::kStorage:
      break;
  }
  return {nullptr, nullptr};
}

double StorageLimitForChoice(SiteChoice choice) {
  switch (choice) {
    case kChoiceAsk:
      return 0.0;
    case kChoiceBlock:
      return -1.0;
    default:
      return 100.0;
  }
}

SiteChoice ChoiceForStorageLimit(std::optional<double> limit) {
  if (limit == -1.0) return kChoiceBlock;
  if (limit == 0.0) return kChoiceAsk;
  return kChoiceAllow;
}

SiteChoice ChoiceForPair(std::optional<bool> always, std::optional<bool> allow) {
  if (!always || !allow || !*always) return kChoiceAsk;
  return *allow ? kChoiceAllow : kChoiceBlock;
}

SiteChoice ReadSiteChoice(SMSettingsManager& settings, const std::string& site,
                          SitePermission permission) {
  if (permission == SitePermission::kStorage) {
    return ChoiceForStorageLimit(settings.GetValueAs<double>(site, kStorageLimit.name));
  }
  BooleanPairKeys keys = PairKeysOf(permission);
  return ChoiceForPair(settings.GetValueAs<bool>(site, keys.always->name),
                       settings.GetValueAs<bool>(site, keys.allow->name));
}

bool WriteSiteChoice(SMSettingsManager& settings, const std::string& site,
                     SitePermission permission, SiteChoice choice) {
  if (permission == SitePermission::kStorage) {
    return settings.SetValue(
        site, SettingValue::Number(kStorageLimit.name, StorageLimitForChoice(choice)));
  }
  BooleanPairKeys keys = PairKeysOf(permission);
  const bool always = choice == kChoiceAllow || choice == kChoiceBlock;
  const bool allow = choice == kChoiceAllow;
  const bool alwaysWritten =
      settings.SetValue(site, SettingValue::Boolean(keys.always->name, always));
  const bool allowWritten = settings.SetValue(site, SettingValue::Boolean(keys.allow->name, allow));
  return alwaysWritten && allowWritten;
}

bool ChoiceDeletesStoredData(SitePermission permission, SiteChoice choice) {
  return permission == SitePermission::kStorage && choice == kChoiceBlock;
}

ChoiceChange ChangeSiteChoice(SMSettingsManager& settings, const std::string& site,
                              SitePermission permission, SiteChoice choice) {
  if (!WriteSiteChoice(settings, site, permission, choice)) return ChoiceChange::kNotWritten;
  if (ChoiceDeletesStoredData(permission, choice) && !settings.RemoveSite(site, false)) {
    return ChoiceChange::kDataNotDeleted;
  }
  return ChoiceChange::kDone;
}

std::vector<std::string> KnownSiteNames(SMSettingsManager& settings) {
  std::vector<std::string> names;
  if (const SettingArray* known = settings.GetKnownSites()) {
    names.reserve(known->size());
    for (const SettingValue& element : *known) names.push_back(element.name());
  }
  return names;
}

bool IsKnownSite(SMSettingsManager& settings, const std::string& site) {
  if (const SettingArray* known = settings.GetKnownSites()) {
    for (const SettingValue& element : *known) {
      if (element.name() == site) return true;
    }
  }
  return false;
}
