#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "settings/setting_value.h"
#include "settings/site_permissions.h"

// One site as a policy wants it; a permission the policy does not name is left as it is.
struct SitePolicy {
  std::string name;
  std::optional<SiteChoice> storage;
  std::optional<SiteChoice> cameraSecure;
  std::optional<SiteChoice> cameraOther;
  std::optional<SiteChoice> peerNetworking;
};

// The state an administrator wants for one profile: only what it names, nothing else.
struct Policy {
  std::vector<SettingValue> globals;
  std::vector<SitePolicy> sites;
  std::vector<std::string> removeSites;
  std::vector<std::string> trustedPresent;
  std::vector<std::string> trustedAbsent;
  std::vector<std::pair<std::string, std::string>> adminSet;
  std::vector<std::string> adminRemove;
};

// Where a policy is wrong: a JSON pointer into the file ("" is the whole file) and what was
// expected there.
struct PolicyError {
  std::string pointer;
  std::string expected;
};

// Reads a policy and checks it against the schema kept beside this file, and that no entry
// contradicts another. Everything that depends on the profile (a key's own type) is the
// caller's to check.
std::optional<Policy> ParsePolicy(std::string_view text, PolicyError* error);

// The same form back, as `export` prints it and ParsePolicy reads it.
nlohmann::json PolicyToJson(const Policy& policy);

// The words of the choices, as the policy and `sites` write them.
const char* ChoiceWord(SiteChoice choice);
std::optional<SiteChoice> ChoiceFromWord(std::string_view word);

// "/a~1b" for the path {"a/b"}: the JSON pointer of nested names.
std::string JsonPointer(const std::vector<std::string>& names);
