#pragma once

#include <cstdint>
#include <string>

class SMSettingsManager;

// What a site may do with one permission: ask each time, allow, or block.
enum SiteChoice : int {
  kChoiceNone = -1,
  kChoiceAsk = 0,
  kChoiceAllow = 1,
  kChoiceBlock = 2,
};

// A permission kept by the player as two booleans of a site.
struct BooleanPairKeys {
  const char* always;
  const char* allow;
};
inline constexpr BooleanPairKeys kCameraOtherKeys{"always", "allow"};
inline constexpr BooleanPairKeys kCameraSecureKeys{"alwayssecure", "allowsecure"};
inline constexpr BooleanPairKeys kPeerNetworkingKeys{"p2palways", "p2pallow"};
inline constexpr const char* kStorageLimitKey = "klimit";

// Reading back is deliberately lopsided: a pair is Allow only when both values are there and
// true, Block only when both are there with "always" true and "allow" false, otherwise Ask.
SiteChoice ReadPairChoice(SMSettingsManager& settings, const std::string& site,
                          BooleanPairKeys keys);
// "klimit" -1 is Block, 0 is Ask, anything else (or no value) is Allow.
SiteChoice ReadStorageChoice(SMSettingsManager& settings, const std::string& site);

// Writes the choice's values and saves the site's file; true when every write succeeded.
bool WritePairChoice(SMSettingsManager& settings, const std::string& site, BooleanPairKeys keys,
                     SiteChoice choice);
bool WriteStorageChoice(SMSettingsManager& settings, const std::string& site, SiteChoice choice);

// The "klimit" a choice stores: 0, 100 or -1.
double StorageLimitForChoice(SiteChoice choice);
// The short word shown in a list row (Ask me / Allow / Block).
uint32_t ChoiceWordId(SiteChoice choice);
// The longer text of a choice list item (Ask me for permission / Allow / Block).
uint32_t ChoiceItemId(SiteChoice choice);
