// Writes the seed corpus of the settings reader fuzzer: real files produced by the writer.
// Usage: make_seed_corpus FOLDER

#include <cstdio>
#include <fstream>
#include <limits>
#include <string>

#include "settings/setting_keys.h"
#include "settings/settings_table.h"
#include "settings/settings_writer.h"

namespace {

void Save(const std::string& folder, const char* name, const SettingsTable& table,
          const std::string& objectName) {
  std::ofstream out(folder + "/" + name + ".sol", std::ios::binary);
  std::string bytes = SerializeSettings(table, objectName);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

SettingsTable GlobalDefaults(int siteCount) {
  SettingsTable table;
  for (const SettingKey* key : kGlobalDefaults) table.Insert(DefaultValueOf(*key));
  // Replacing a value keeps its place in the table.
  SettingArray trusted;
  trusted.Append(SettingValue::Boolean("C:\\Users\\dev\\movie.swf", true));
  table.Insert(SettingValue::Array(kTrustedPaths.name, trusted));
  SettingArray domains;
  for (int i = 0; i < siteCount; ++i) {
    domains.Append(SettingValue::Boolean("site" + std::to_string(i) + ".example.com", true));
  }
  table.Insert(SettingValue::Array(kKnownSites.name, domains));
  return table;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_seed_corpus FOLDER\n");
    return 2;
  }
  const std::string folder = argv[1];
  Save(folder, "master-empty", SettingsTable(), kMasterObjectName);
  Save(folder, "master-defaults", GlobalDefaults(0), kMasterObjectName);
  Save(folder, "master-three-sites", GlobalDefaults(3), kMasterObjectName);

  SettingsTable site;
  site.Insert(SettingValue::Boolean(kCameraAllow.name, true));
  site.Insert(SettingValue::Boolean(kCameraAlways.name, true));
  site.Insert(SettingValue::Boolean(kCameraAllowSecure.name, false));
  site.Insert(SettingValue::Boolean(kCameraAlwaysSecure.name, false));
  site.Insert(SettingValue::Number(kStorageLimit.name, 1000));
  site.Insert(SettingValue::Boolean(kPeerAllow.name, false));
  site.Insert(SettingValue::Boolean(kPeerAlways.name, true));
  Save(folder, "site-example", site, "example.com/settings");

  SettingsTable mixed;
  SettingArray elements;
  elements.Append(SettingValue::Number("n", 2.5));
  elements.Append(SettingValue::OfUnknownType("u", 6));
  elements.Append(SettingValue::String("s", "text"));
  elements.Append(SettingValue::Boolean("b", false));
  mixed.Insert(SettingValue::Array("list", elements));
  mixed.Insert(SettingValue::String("title",
                                    "gr\xC3\xBC\xC3\x9F"
                                    "e"));
  mixed.Insert(SettingValue::Number("nan", std::numeric_limits<double>::quiet_NaN()));
  mixed.Insert(SettingValue::Boolean("", true));
  Save(folder, "mixed-types", mixed, "\xC3\xA9t\xC3\xA9.example/settings");
  return 0;
}
