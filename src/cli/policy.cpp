#include "cli/policy.h"

#include <cmath>
#include <set>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include "cli/json_codec.h"
#include "cli/policy_schema.h"
#include "settings/setting_keys.h"

namespace {

using nlohmann::json;

// The schema, parsed once. Its descriptions double as the "expected" of an error message.
const json& SchemaJson() {
  static const json schema = json::parse(kPolicySchemaText);
  return schema;
}

const valijson::Schema& Schema() {
  static valijson::Schema schema;
  static const bool parsed = [] {
    valijson::SchemaParser parser;
    valijson::adapters::NlohmannJsonAdapter adapter(SchemaJson());
    parser.populateSchema(adapter, schema);
    return true;
  }();
  (void)parsed;
  return schema;
}

const json* ResolveReference(const json* node) {
  while (node != nullptr && node->is_object() && node->contains("$ref")) {
    // Every reference of our schema is "#/definitions/NAME".
    const std::string reference = (*node)["$ref"].get<std::string>();
    const std::string name = reference.substr(reference.rfind('/') + 1);
    node = &SchemaJson()["definitions"][name];
  }
  return node;
}

// The part of the schema that describes the value at a path of the document.
const json* SchemaAt(const std::vector<std::string>& names) {
  const json* node = ResolveReference(&SchemaJson());
  for (const std::string& name : names) {
    if (node == nullptr || !node->is_object()) return nullptr;
    if (node->contains("properties") && (*node)["properties"].contains(name)) {
      node = &(*node)["properties"][name];
    } else if (node->contains("additionalProperties") &&
               (*node)["additionalProperties"].is_object()) {
      node = &(*node)["additionalProperties"];
    } else if (node->contains("items")) {
      node = &(*node)["items"];
    } else {
      return nullptr;
    }
    node = ResolveReference(node);
  }
  return node;
}

std::string DescriptionAt(const std::vector<std::string>& names) {
  const json* schema = SchemaAt(names);
  if (schema == nullptr || !schema->contains("description")) return "";
  return (*schema)["description"].get<std::string>();
}

// The first error the validator reports is the innermost one, where the file is wrong.
PolicyError ErrorFrom(const valijson::ValidationResults::Error& failure) {
  std::vector<std::string> names;
  for (const std::string& step : failure.context) {
    // "<root>", then "[name]" or "[index]" for each step down.
    if (step.size() >= 2 && step.front() == '[' && step.back() == ']') {
      names.push_back(step.substr(1, step.size() - 2));
    }
  }
  static constexpr std::string_view kUnknownKey = "constraints: '";
  const size_t quoted = failure.description.rfind(kUnknownKey);
  if (quoted != std::string::npos && failure.description.ends_with("'.")) {
    const size_t start = quoted + kUnknownKey.size();
    std::string allowed;
    if (const json* schema = SchemaAt(names); schema != nullptr && schema->contains("properties")) {
      for (const auto& [key, ignored] : (*schema)["properties"].items()) {
        if (key == kKnownSites.name || key == kTrustedPaths.name) continue;
        allowed += (allowed.empty() ? "" : ", ") + ("\"" + key + "\"");
      }
    }
    names.push_back(failure.description.substr(start, failure.description.size() - start - 2));
    return {JsonPointer(names), "one of the keys " + allowed + " (an unknown key is an error)"};
  }
  std::string expected = DescriptionAt(names);
  if (expected.empty()) expected = failure.description;
  return {JsonPointer(names), expected};
}

std::optional<SiteChoice> ChoiceMember(const json& object, const char* key) {
  if (!object.contains(key)) return std::nullopt;
  return ChoiceFromWord(object[key].get<std::string>());
}

// Members the schema allows to be missing read as empty.
json MemberOrEmpty(const json& object, const char* key, json empty) {
  return object.contains(key) ? object[key] : empty;
}

std::vector<std::string> StringList(const json& object, const char* key) {
  return MemberOrEmpty(object, key, json::array()).get<std::vector<std::string>>();
}

Policy PolicyFrom(const json& document) {
  Policy policy;
  const json globals = MemberOrEmpty(document, "globals", json::object());
  for (const auto& [name, value] : globals.items()) {
    if (value.is_boolean()) {
      policy.globals.push_back(SettingValue::Boolean(name, value.get<bool>()));
    } else if (value.is_number()) {
      policy.globals.push_back(SettingValue::Number(name, value.get<double>()));
    } else {
      policy.globals.push_back(SettingValue::String(name, value.get<std::string>()));
    }
  }
  const json sites = MemberOrEmpty(document, "sites", json::object());
  for (const auto& [name, site] : sites.items()) {
    const json cammic = MemberOrEmpty(site, "cammic", json::object());
    policy.sites.push_back({name, ChoiceMember(site, "storage"), ChoiceMember(cammic, "https"),
                            ChoiceMember(cammic, "other"), ChoiceMember(site, "p2p")});
  }
  policy.removeSites = StringList(document, "removeSites");
  const json trusted = MemberOrEmpty(document, "trusted", json::object());
  policy.trustedPresent = StringList(trusted, "present");
  policy.trustedAbsent = StringList(trusted, "absent");
  const json admin = MemberOrEmpty(document, "admin", json::object());
  const json adminSet = MemberOrEmpty(admin, "set", json::object());
  for (const auto& [key, value] : adminSet.items()) {
    policy.adminSet.emplace_back(key, value.get<std::string>());
  }
  policy.adminRemove = StringList(admin, "remove");
  return policy;
}

// An entry that asks for one thing and its opposite: a site set and removed, a location present
// and absent, a key set and removed.
std::optional<PolicyError> Contradiction(const Policy& policy) {
  std::set<std::string> sites;
  for (const SitePolicy& site : policy.sites) sites.insert(site.name);
  for (size_t index = 0; index < policy.removeSites.size(); ++index) {
    if (sites.count(policy.removeSites[index]) != 0) {
      return PolicyError{JsonPointer({"removeSites", std::to_string(index)}),
                         "a site that \"sites\" does not also set"};
    }
  }
  std::set<std::string> present(policy.trustedPresent.begin(), policy.trustedPresent.end());
  for (size_t index = 0; index < policy.trustedAbsent.size(); ++index) {
    if (present.count(policy.trustedAbsent[index]) != 0) {
      return PolicyError{JsonPointer({"trusted", "absent", std::to_string(index)}),
                         "a location that \"present\" does not also list"};
    }
  }
  std::set<std::string> setKeys;
  for (const auto& [key, value] : policy.adminSet) setKeys.insert(key);
  for (size_t index = 0; index < policy.adminRemove.size(); ++index) {
    if (setKeys.count(policy.adminRemove[index]) != 0) {
      return PolicyError{JsonPointer({"admin", "remove", std::to_string(index)}),
                         "a key that \"set\" does not also set"};
    }
  }
  return std::nullopt;
}

}  // namespace

const char* ChoiceWord(SiteChoice choice) {
  switch (choice) {
    case kChoiceAllow:
      return "allow";
    case kChoiceBlock:
      return "block";
    default:
      return "ask";
  }
}

std::optional<SiteChoice> ChoiceFromWord(std::string_view word) {
  if (word == "ask") return kChoiceAsk;
  if (word == "allow") return kChoiceAllow;
  if (word == "block") return kChoiceBlock;
  return std::nullopt;
}

std::string JsonPointer(const std::vector<std::string>& names) {
  std::string pointer;
  for (const std::string& name : names) {
    pointer += '/';
    for (char c : name) {
      if (c == '~') {
        pointer += "~0";
      } else if (c == '/') {
        pointer += "~1";
      } else {
        pointer += c;
      }
    }
  }
  return pointer;
}

std::optional<Policy> ParsePolicy(std::string_view text, PolicyError* error) {
  json document;
  try {
    document = json::parse(text.begin(), text.end());
  } catch (const json::exception& failure) {
    // The library's message gives the line and column.
    *error = {"", std::string("JSON (") + failure.what() + ")"};
    return std::nullopt;
  }
  valijson::Validator validator;
  valijson::ValidationResults results;
  valijson::adapters::NlohmannJsonAdapter adapter(document);
  if (!validator.validate(Schema(), adapter, &results)) {
    valijson::ValidationResults::Error first;
    results.popError(first);
    *error = ErrorFrom(first);
    return std::nullopt;
  }
  Policy policy = PolicyFrom(document);
  if (std::optional<PolicyError> contradiction = Contradiction(policy)) {
    *error = *contradiction;
    return std::nullopt;
  }
  return policy;
}

json PolicyToJson(const Policy& policy) {
  json document = json::object();
  for (const SettingValue& global : policy.globals) {
    const bool scalar = global.type() == kSettingNumber || global.type() == kSettingBoolean ||
                        global.type() == kSettingString;
    // A number JSON cannot hold (the player's file may have one) is left out.
    if (!scalar || (global.type() == kSettingNumber && !std::isfinite(global.number()))) continue;
    document["globals"][global.name()] = ValueToJson(global)["value"];
  }
  for (const SitePolicy& site : policy.sites) {
    json& entry = document["sites"][site.name];
    entry = json::object();
    if (site.storage) entry["storage"] = ChoiceWord(*site.storage);
    if (site.cameraSecure) entry["cammic"]["https"] = ChoiceWord(*site.cameraSecure);
    if (site.cameraOther) entry["cammic"]["other"] = ChoiceWord(*site.cameraOther);
    if (site.peerNetworking) entry["p2p"] = ChoiceWord(*site.peerNetworking);
  }
  if (!policy.removeSites.empty()) document["removeSites"] = policy.removeSites;
  if (!policy.trustedPresent.empty()) document["trusted"]["present"] = policy.trustedPresent;
  if (!policy.trustedAbsent.empty()) document["trusted"]["absent"] = policy.trustedAbsent;
  for (const auto& [key, value] : policy.adminSet) document["admin"]["set"][key] = value;
  if (!policy.adminRemove.empty()) document["admin"]["remove"] = policy.adminRemove;
  return document;
}
