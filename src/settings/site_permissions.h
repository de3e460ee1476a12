#pragma once

#include <optional>
#include <string>
#include <vector>

#include "settings/setting_keys.h"

class SMSettingsManager;

// What a site may do with one permission: ask each time, allow, or block. The store keeps no
// meaning of its own for the per-site values; this is the one place that gives them one, for
// the pages, the by-site dialogs and the command-line tool alike.
enum SiteChoice : int {
  kChoiceNone = -1,
  kChoiceAsk = 0,
  kChoiceAllow = 1,
  kChoiceBlock = 2,
};

// The permissions a site has, each kept in its own per-site values.
enum class SitePermission {
  kStorage,         // kStorageLimit: 0 ask, 100 allow, -1 block
  kCameraOther,     // kCameraAlways / kCameraAllow
  kCameraSecure,    // kCameraAlwaysSecure / kCameraAllowSecure (HTTPS pages)
  kPeerNetworking,  // kPeerAlways / kPeerAllow
};

// A permission kept by the player as two booleans of a site.
struct BooleanPairKeys {
  const SettingKey* always;
  const SettingKey* allow;
};
BooleanPairKeys PairKeysOf(SitePermission permission);

// The storage limit a choice stores: 0 for Ask, -1 for Block, 100 for Allow and anything else.
double StorageLimitForChoice(SiteChoice choice);
// Reading back: -1 is Block, 0 is Ask, any other number (or none) is Allow.
SiteChoice ChoiceForStorageLimit(std::optional<double> limit);
// Reading back a pair is deliberately lopsided: Allow only when both values are there and true,
// Block only when both are there with "always" true and "allow" false, otherwise Ask.
SiteChoice ChoiceForPair(std::optional<bool> always, std::optional<bool> allow);

// The site's current choice for a permission, from its stored values.
SiteChoice ReadSiteChoice(SMSettingsManager& settings, const std::string& site,
                          SitePermission permission);
// Writes the choice's values (always before allow) and saves the site's file; true when every
// write succeeded. A failed write leaves the value that was there before.
[[nodiscard]] bool WriteSiteChoice(SMSettingsManager& settings, const std::string& site,
                                   SitePermission permission, SiteChoice choice);

// Whether changing a known site to this choice also deletes what the site has stored: Block for
// storage does, at once, keeping the site's settings.
bool ChoiceDeletesStoredData(SitePermission permission, SiteChoice choice);

// What changing a known site's choice came to.
enum class ChoiceChange {
  kDone,            // written, and the stored data deleted where the choice asks for it
  kNotWritten,      // a value could not be written; nothing was deleted
  kDataNotDeleted,  // written, but the stored data the choice deletes could not all be deleted
};
// Changes a known site's choice as the by-site lists do (see ChoiceDeletesStoredData).
[[nodiscard]] ChoiceChange ChangeSiteChoice(SMSettingsManager& settings, const std::string& site,
                                            SitePermission permission, SiteChoice choice);

// The names of the known sites in list order, empty names included (some callers skip them).
std::vector<std::string> KnownSiteNames(SMSettingsManager& settings);
bool IsKnownSite(SMSettingsManager& settings, const std::string& site);
