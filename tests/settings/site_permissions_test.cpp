// What the per-site values mean when they are read back.
#include "settings/site_permissions.h"

#include <gtest/gtest.h>

#include "support/test_profile.h"

TEST(SitePermissions, ReadingBackIsLopsided) {
  SitesProfile profile;
  SMSettingsManager settings(*profile.platform);
  struct Case {
    std::vector<SettingValue> stored;
    SiteChoice peers;
    SiteChoice storage;
  };
  const auto B = &SettingValue::Boolean;
  const auto N = &SettingValue::Number;
  const Case cases[] = {
      {.stored = {B("p2palways", true), B("p2pallow", true), N("klimit", -2)},
       .peers = kChoiceAllow,
       .storage = kChoiceAllow},
      {.stored = {B("p2palways", true), B("p2pallow", false), N("klimit", -1)},
       .peers = kChoiceBlock,
       .storage = kChoiceBlock},
      {.stored = {B("p2palways", true), N("klimit", -0.0)},
       .peers = kChoiceAsk,
       .storage = kChoiceAsk},
      {.stored = {B("p2palways", false), B("p2pallow", true), N("klimit", 100)},
       .peers = kChoiceAsk,
       .storage = kChoiceAllow},
      {.stored = {N("p2palways", 1), B("p2pallow", true)},
       .peers = kChoiceAsk,
       .storage = kChoiceAllow},
      {.stored = {SettingValue::String("klimit", "-1")},
       .peers = kChoiceAsk,
       .storage = kChoiceAllow},
  };
  int row = 0;
  for (const Case& c : cases) {
    const std::string site = "site" + std::to_string(row++);
    for (const SettingValue& value : c.stored) ASSERT_TRUE(settings.SetValue(site, value));
    EXPECT_EQ(ReadSiteChoice(settings, site, SitePermission::kPeerNetworking), c.peers) << site;
    EXPECT_EQ(ReadSiteChoice(settings, site, SitePermission::kStorage), c.storage) << site;
  }
}
