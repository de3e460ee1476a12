#pragma once

#include <string_view>

#include "settings/setting_value.h"

// Every setting this program reads, writes or fills in, declared once: its key in the player's
// files, its type, its default and the file that keeps it. Nobody else spells a key.

// The name of every settings file, the master's and each site's.
inline constexpr const char* kSettingsFileName = "settings.sol";
// The object name inside the master file; a site's file is named after the site plus this
// suffix ("example.com/settings").
inline constexpr const char* kMasterObjectName = "settings";
inline constexpr const char* kSiteObjectSuffix = "/settings";

// Where a setting is kept: in the master file, or in each site's own file.
enum class SettingFile { kMaster, kSite };

struct SettingKey {
  const char* name;
  SettingType type;
  SettingFile file;
  double numberDefault = 0.0;
  bool booleanDefault = false;  // an array starts empty
  // For a site key: the master key whose value, read at the first site creation of a run, is
  // this key's default (or, when that value is missing or of another type, its own default).
  const SettingKey* seed = nullptr;
};

constexpr SettingKey MasterBoolean(const char* name, bool fallback) {
  return {name, kSettingBoolean, SettingFile::kMaster, 0.0, fallback};
}
constexpr SettingKey MasterNumber(const char* name, double fallback) {
  return {name, kSettingNumber, SettingFile::kMaster, fallback};
}
constexpr SettingKey MasterArray(const char* name) {
  return {name, kSettingArray, SettingFile::kMaster};
}
constexpr SettingKey SiteBoolean(const char* name) {
  return {name, kSettingBoolean, SettingFile::kSite};
}
constexpr SettingKey SiteSeededBy(const char* name, const SettingKey& seed) {
  return {name, seed.type, SettingFile::kSite, seed.numberDefault, seed.booleanDefault, &seed};
}

// The master file. Keys without a use of their own here are read by the player alone; this
// program only keeps them and adds them when missing.
inline constexpr SettingKey kDefaultAlways = MasterBoolean("defaultalways", false);
inline constexpr SettingKey kCrossDomainAlways = MasterBoolean("crossdomainAlways", true);
inline constexpr SettingKey kCrossDomainAllow = MasterBoolean("crossdomainAllow", false);
// One element per trusted file or folder, named by its path and holding true.
inline constexpr SettingKey kTrustedPaths = MasterArray("trustedPaths");
inline constexpr SettingKey kDefaultStorageLimit = MasterNumber("defaultklimit", 100);
inline constexpr SettingKey kAllowThirdPartyStorage =
    MasterBoolean("allowThirdPartyLSOAccess", true);
inline constexpr SettingKey kSecureCrossDomainCacheSize =
    MasterNumber("secureCrossDomainCacheSize", -1);
inline constexpr SettingKey kDisallowPeerUplink = MasterBoolean("disallowP2PUplink", false);
inline constexpr SettingKey kAutoUpdateDisabled = MasterBoolean("autoUpdateDisabled", false);
inline constexpr SettingKey kAutoUpdateInterval = MasterNumber("autoUpdateInterval", 14);
// The known sites: one element per site, named by the site and holding true, in the order they
// were added. A master file without it gets an empty one, after the other defaults.
inline constexpr SettingKey kKnownSites = MasterArray("domains");

// Each site's file. A permission is kept as a pair of booleans ("always" set once the user
// answered, "allow" the answer) or, for storage, as a limit.
inline constexpr SettingKey kCameraAllow = SiteBoolean("allow");
inline constexpr SettingKey kCameraAlways = SiteSeededBy("always", kDefaultAlways);
inline constexpr SettingKey kCameraAllowSecure = SiteBoolean("allowsecure");
inline constexpr SettingKey kCameraAlwaysSecure = SiteSeededBy("alwayssecure", kDefaultAlways);
inline constexpr SettingKey kStorageLimit = SiteSeededBy("klimit", kDefaultStorageLimit);
inline constexpr SettingKey kPeerAllow = SiteBoolean("p2pallow");
inline constexpr SettingKey kPeerAlways = SiteBoolean("p2palways");

// The keys a master file is completed with, in the order missing ones are added: the order
// decides where each lands in the file.
inline constexpr const SettingKey* kGlobalDefaults[] = {
    &kDefaultAlways,
    &kCrossDomainAlways,
    &kCrossDomainAllow,
    &kTrustedPaths,
    &kDefaultStorageLimit,
    &kAllowThirdPartyStorage,
    &kSecureCrossDomainCacheSize,
    &kDisallowPeerUplink,
    &kAutoUpdateDisabled,
    &kAutoUpdateInterval,
};
// The keys a site file is completed with, in the order missing ones are added.
inline constexpr const SettingKey* kSiteDefaults[] = {
    &kCameraAllow,  &kCameraAlways, &kCameraAllowSecure, &kCameraAlwaysSecure,
    &kStorageLimit, &kPeerAllow,    &kPeerAlways,
};

// The key's default: a number, a boolean or an empty array.
SettingValue DefaultValueOf(const SettingKey& key);
// The declared key of that name in that file, or nullptr for a key this program does not know.
const SettingKey* FindSettingKey(SettingFile file, std::string_view name);
