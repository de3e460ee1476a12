// apply and export: a profile brought to the state a policy file describes, and the profile's
// state in the same form. Each entry is written by the same operations as the single commands,
// and an entry that already holds is not touched at all.
#include <algorithm>
#include <functional>
#include <iostream>
#include <iterator>

#include "cli/commands.h"
#include "cli/json_codec.h"
#include "cli/policy.h"
#include "dialogs/trusted_locations_logic.h"
#include "platform/file_io.h"

namespace {

using nlohmann::json;

// One entry that does not hold yet: what it is, its value now (null: absent) and the one it
// gets, and how to write it.
struct Change {
  std::string what;
  json from;
  json to;
  std::function<bool()> apply;
};

json ScalarJson(const SettingValue* value) {
  if (value == nullptr) return nullptr;
  return ValueToJson(*value)["value"];
}

bool SameScalar(const SettingValue& wanted, const SettingValue* current) {
  if (current == nullptr || current->type() != wanted.type()) return false;
  switch (wanted.type()) {
    case kSettingNumber:
      return current->number() == wanted.number();
    case kSettingBoolean:
      return current->boolean() == wanted.boolean();
    default:
      return current->text() == wanted.text();
  }
}

// The type a global key has: the one it has in the master file, else that of its default.
std::optional<std::string> OwnType(SMSettingsManager& settings, const std::string& name) {
  if (const SettingValue* value = settings.GetValue(SMSettingsManager::MasterDomain(), name)) {
    return TypeWord(*value);
  }
  for (const SettingValue& fallback : SMSettingsManager::GlobalDefaults()) {
    if (fallback.name() == name) return TypeWord(fallback);
  }
  return std::nullopt;
}

// What the policy asks that this profile cannot hold; nothing has been written yet.
std::optional<PolicyError> CheckAgainstProfile(const Policy& policy, SMSettingsManager& settings) {
  for (const SettingValue& global : policy.globals) {
    std::optional<std::string> type = OwnType(settings, global.name());
    if (type && *type != TypeWord(global)) {
      return PolicyError{JsonPointer({"globals", global.name()}),
                         "a " + *type + ", the type of " + global.name()};
    }
  }
  return std::nullopt;
}

void PlanGlobals(const Policy& policy, SMSettingsManager& settings, std::vector<Change>& changes) {
  const std::string& master = SMSettingsManager::MasterDomain();
  for (const SettingValue& wanted : policy.globals) {
    const SettingValue* current = settings.GetValue(master, wanted.name());
    if (SameScalar(wanted, current)) continue;
    changes.push_back({"global " + wanted.name(), ScalarJson(current), ScalarJson(&wanted),
                       [&settings, &master, wanted] { return settings.SetValue(master, wanted); }});
  }
}

void PlanSites(const Policy& policy, SMSettingsManager& settings, std::vector<Change>& changes) {
  for (const SitePolicy& site : policy.sites) {
    const bool known = IsKnownSite(settings, site.name);
    const struct {
      SitePermission permission;
      std::optional<SiteChoice> choice;
      const char* label;
    } wanted[] = {
        {SitePermission::kStorage, site.storage, "storage"},
        {SitePermission::kCameraSecure, site.cameraSecure, "cammic https"},
        {SitePermission::kCameraOther, site.cameraOther, "cammic other"},
        {SitePermission::kPeerNetworking, site.peerNetworking, "p2p"},
    };
    for (const auto& entry : wanted) {
      if (!entry.choice) continue;
      json from = nullptr;
      if (known) {
        SiteChoice current = ReadSiteChoice(settings, site.name, entry.permission);
        if (current == *entry.choice) continue;
        from = ChoiceWord(current);
      }
      // A new site is added as the add-site dialog adds it; a known one changes as in its list.
      changes.push_back({"site " + site.name + " " + entry.label, from, ChoiceWord(*entry.choice),
                         [&settings, name = site.name, known, permission = entry.permission,
                          choice = *entry.choice] {
                           if (known) return ChangeSiteChoice(settings, name, permission, choice);
                           return settings.AddSite(name) &&
                                  WriteSiteChoice(settings, name, permission, choice);
                         }});
    }
  }
}

bool Lists(SMPlatformServices& platform, const std::string& folder, const std::string& name) {
  if (folder.empty()) return false;
  std::optional<std::vector<std::string>> entries = platform.ListEntries(folder);
  return entries && std::find(entries->begin(), entries->end(), name) != entries->end();
}

void PlanRemovals(const Policy& policy, CliContext& context, std::vector<Change>& changes) {
  SMSettingsManager& settings = context.settings();
  SMPlatformServices& platform = context.platform();
  for (const std::string& site : policy.removeSites) {
    std::string from = "known";
    if (!IsKnownSite(settings, site)) {
      const bool hasFolders = Lists(platform, settings.settingsFolder(), "#" + site) ||
                              Lists(platform, settings.storedDataFolder(), site) ||
                              Lists(platform, settings.appContainerFolder(), site);
      if (!hasFolders) continue;
      from = "folders of an unknown site";
    }
    changes.push_back({"site " + site, from, "removed",
                       [&settings, site] { return settings.RemoveSite(site, true); }});
  }
}

void PlanTrusted(const Policy& policy, SMSettingsManager& settings, std::vector<Change>& changes) {
  const std::vector<std::string> current = TrustedLocations(settings);
  auto listed = [&current](const std::string& location) {
    return std::find(current.begin(), current.end(), location) != current.end();
  };
  for (const std::string& location : policy.trustedPresent) {
    if (listed(location)) continue;
    changes.push_back({"trusted " + location, "absent", "present", [&settings, location] {
                         return AddTrustedLocation(settings, location) !=
                                TrustedChange::kWriteFailed;
                       }});
  }
  for (const std::string& location : policy.trustedAbsent) {
    if (!listed(location)) continue;
    changes.push_back({"trusted " + location, "present", "absent", [&settings, location] {
                         return RemoveTrustedLocations(settings, {location}) ==
                                TrustedChange::kWritten;
                       }});
  }
}

void PlanAdmin(const Policy& policy, SMAdminConfig& config, std::vector<Change>& changes) {
  auto valueJson = [&config](const std::string& key) -> json {
    std::optional<std::string> value = config.GetValue(key);
    return value ? json(*value) : json(nullptr);
  };
  for (const auto& [key, value] : policy.adminSet) {
    if (config.GetValue(key) == value) continue;
    changes.push_back({"tss.cfg " + key, valueJson(key), value, [&config, key, value] {
                         config.SetValue(key, value);
                         return WriteAdminFile(config);
                       }});
  }
  for (const std::string& key : policy.adminRemove) {
    if (!config.GetValue(key)) continue;
    changes.push_back({"tss.cfg " + key, valueJson(key), nullptr, [&config, key] {
                         config.RemoveValue(key);
                         return WriteAdminFile(config);
                       }});
  }
}

std::string ValueWord(const json& value) {
  if (value.is_null()) return "absent";
  if (value.is_string()) return value.get<std::string>();
  return DumpJson(value);
}

json ChangeJson(const Change& change) {
  return {{"what", change.what}, {"from", change.from}, {"to", change.to}};
}

// The changes made (or, checking, those that would be made), and the one that failed.
int Report(CliContext& context, const std::vector<Change>& changes, size_t applied,
           bool checkOnly) {
  const bool failed = applied < changes.size();
  if (context.options().json) {
    json report = {{"changed", applied > 0}, {"changes", json::array()}};
    for (size_t index = 0; index < applied; ++index) {
      report["changes"].push_back(ChangeJson(changes[index]));
    }
    if (failed) report["failed"] = ChangeJson(changes[applied]);
    std::cout << DumpJson(report, 2) << '\n';
  } else {
    for (size_t index = 0; index < applied; ++index) {
      const Change& change = changes[index];
      std::cout << change.what << ": " << ValueWord(change.from) << " -> " << ValueWord(change.to)
                << '\n';
    }
    if (changes.empty()) std::cout << "every entry of the policy already holds; nothing changed\n";
  }
  if (failed) {
    const Change& change = changes[applied];
    return Fail(kExitFailed, "could not apply " + change.what + " (" + ValueWord(change.from) +
                                 " -> " + ValueWord(change.to) +
                                 "); the changes listed before it stay applied");
  }
  if (checkOnly && !changes.empty()) std::cerr << "vpsettings: checked only; nothing was written\n";
  return kExitOk;
}

int InvalidPolicy(CliContext& context, const std::string& file, const PolicyError& error) {
  const std::string message = (file == "-" ? "the policy" : file) + " at \"" + error.pointer +
                              "\": expected " + error.expected;
  if (context.options().json) {
    std::cout << DumpJson({{"changed", false}, {"changes", json::array()}, {"error", message}}, 2)
              << '\n';
  }
  return Fail(kExitUsage, message);
}

}  // namespace

int RunApply(CliContext& context, const std::string& policyFile, bool checkOnly) {
  std::optional<std::string> text;
  if (policyFile == "-") {
    text.emplace(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
  } else {
    text = ReadWholeFile(policyFile);
  }
  if (!text) return Fail(kExitFailed, "cannot read " + policyFile);
  PolicyError error;
  std::optional<Policy> policy = ParsePolicy(*text, &error);
  if (!policy) return InvalidPolicy(context, policyFile, error);
  SMSettingsManager& settings = context.settings();
  if (std::optional<PolicyError> mismatch = CheckAgainstProfile(*policy, settings)) {
    return InvalidPolicy(context, policyFile, *mismatch);
  }

  std::vector<Change> changes;
  PlanGlobals(*policy, settings, changes);
  PlanSites(*policy, settings, changes);
  PlanRemovals(*policy, context, changes);
  PlanTrusted(*policy, settings, changes);
  PlanAdmin(*policy, context.adminConfig(), changes);
  size_t applied = 0;
  if (checkOnly) {
    applied = changes.size();
  } else {
    while (applied < changes.size() && changes[applied].apply()) ++applied;
  }
  return Report(context, changes, applied, checkOnly);
}

int RunExport(CliContext& context) {
  SMSettingsManager& settings = context.settings();
  const std::string& master = SMSettingsManager::MasterDomain();
  Policy state;
  for (const std::string& name : settings.GetNames(master)) {
    if (name == kKnownSitesKey || name == "trustedPaths") continue;
    const SettingValue* value = settings.GetValue(master, name);
    if (value != nullptr && value->type() != kSettingArray) state.globals.push_back(*value);
  }
  for (const std::string& name : KnownSiteNames(settings)) {
    if (name.empty() || name == master) continue;
    state.sites.push_back({name, ReadSiteChoice(settings, name, SitePermission::kStorage),
                           ReadSiteChoice(settings, name, SitePermission::kCameraSecure),
                           ReadSiteChoice(settings, name, SitePermission::kCameraOther),
                           ReadSiteChoice(settings, name, SitePermission::kPeerNetworking)});
  }
  state.trustedPresent = TrustedLocations(settings);
  for (const auto& [key, value] : context.adminConfig().entries()) {
    state.adminSet.emplace_back(key, value);
  }
  std::cout << DumpJson(PolicyToJson(state), 2) << '\n';
  return kExitOk;
}
