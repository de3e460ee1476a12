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
#include "settings/setting_keys.h"

namespace {

using nlohmann::json;

// One entry that does not hold yet: what it is, its value now (null: absent) and the one it
// gets, the file it writes (or the site whose folders it deletes), and how. Changes are worked
// out on a store that writes nothing and made on the one that writes, so they reach the store
// through the context.
struct Change {
  enum Target { kSettingsFile, kAdminFile, kSiteFolders };
  std::string what;
  json from;
  json to;
  Target target;
  std::string path;
  std::function<bool(CliContext&)> apply;
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
  if (const SettingKey* key = FindSettingKey(SettingFile::kMaster, name)) {
    return TypeWord(DefaultValueOf(*key));
  }
  return std::nullopt;
}

// What the policy asks that this profile cannot hold, or the tool refuses to write; nothing
// has been written yet.
std::optional<PolicyError> CheckAgainstProfile(const Policy& policy, SMSettingsManager& settings) {
  for (const SettingValue& global : policy.globals) {
    const std::string pointer = JsonPointer({"globals", global.name()});
    std::optional<std::string> type = OwnType(settings, global.name());
    if (type && *type != TypeWord(global)) {
      return PolicyError{pointer, "a " + *type + ", the type of " + global.name()};
    }
    if (global.type() == kSettingNumber) {
      if (std::optional<Refusal> refusal = RefuseNonFiniteNumber(global.name(), global.number())) {
        return PolicyError{pointer, refusal->message};
      }
    }
  }
  for (const SitePolicy& site : policy.sites) {
    if (std::optional<Refusal> refusal = RefuseNonSite(site.name)) {
      return PolicyError{JsonPointer({"sites", site.name}), "a site: " + refusal->message};
    }
  }
  for (size_t index = 0; index < policy.removeSites.size(); ++index) {
    if (std::optional<Refusal> refusal = RefuseNonSite(policy.removeSites[index])) {
      return PolicyError{JsonPointer({"removeSites", std::to_string(index)}),
                         "a site: " + refusal->message};
    }
  }
  for (const auto& [key, value] : policy.adminSet) {
    if (std::optional<Refusal> refusal = RefuseAdminEntry(key, value)) {
      return PolicyError{JsonPointer({"admin", "set", key}),
                         "an entry tss.cfg reads back as it is: " + refusal->message};
    }
  }
  return std::nullopt;
}

void PlanGlobals(const Policy& policy, CliContext& context, std::vector<Change>& changes) {
  const std::string& master = SMSettingsManager::MasterDomain();
  for (const SettingValue& wanted : policy.globals) {
    const SettingValue* current = context.settings().GetValue(master, wanted.name());
    if (SameScalar(wanted, current)) continue;
    changes.push_back({"global " + wanted.name(), ScalarJson(current), ScalarJson(&wanted),
                       Change::kSettingsFile, context.MasterFile(), [wanted](CliContext& store) {
                         return store.settings().SetValue(SMSettingsManager::MasterDomain(),
                                                          wanted);
                       }});
  }
}

void PlanSites(const Policy& policy, CliContext& context, std::vector<Change>& changes) {
  SMSettingsManager& settings = context.settings();
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
      changes.push_back(
          {"site " + site.name + " " + entry.label, from, ChoiceWord(*entry.choice),
           Change::kSettingsFile, settings.SettingsFileOf(site.name).value_or(""),
           [name = site.name, known, permission = entry.permission,
            choice = *entry.choice](CliContext& store) {
             SMSettingsManager& writer = store.settings();
             if (known) {
               return ChangeSiteChoice(writer, name, permission, choice) == ChoiceChange::kDone;
             }
             return writer.AddSite(name) && WriteSiteChoice(writer, name, permission, choice);
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
    changes.push_back(
        {"site " + site, from, "removed", Change::kSiteFolders, site,
         [site](CliContext& store) { return store.settings().RemoveSite(site, true); }});
  }
}

void PlanTrusted(const Policy& policy, CliContext& context, std::vector<Change>& changes) {
  const std::vector<std::string> current = TrustedLocations(context.settings());
  auto listed = [&current](const std::string& location) {
    return std::find(current.begin(), current.end(), location) != current.end();
  };
  for (const std::string& location : policy.trustedPresent) {
    if (listed(location)) continue;
    changes.push_back({"trusted " + location, "absent", "present", Change::kSettingsFile,
                       context.MasterFile(), [location](CliContext& store) {
                         return AddTrustedLocation(store.settings(), location) !=
                                TrustedChange::kWriteFailed;
                       }});
  }
  for (const std::string& location : policy.trustedAbsent) {
    if (!listed(location)) continue;
    changes.push_back({"trusted " + location, "present", "absent", Change::kSettingsFile,
                       context.MasterFile(), [location](CliContext& store) {
                         return RemoveTrustedLocations(store.settings(), {location}) ==
                                TrustedChange::kWritten;
                       }});
  }
}

void PlanAdmin(const Policy& policy, CliContext& context, std::vector<Change>& changes) {
  SMAdminConfig& config = context.adminConfig();
  auto valueJson = [&config](const std::string& key) -> json {
    std::optional<std::string> value = config.GetValue(key);
    return value ? json(*value) : json(nullptr);
  };
  for (const std::pair<std::string, std::string>& entry : policy.adminSet) {
    if (config.GetValue(entry.first) == entry.second) continue;
    changes.push_back({"tss.cfg " + entry.first, valueJson(entry.first), entry.second,
                       Change::kAdminFile, config.path(), [entry](CliContext& store) {
                         store.adminConfig().SetValue(entry.first, entry.second);
                         return WriteAdminFile(store.adminConfig());
                       }});
  }
  for (const std::string& key : policy.adminRemove) {
    if (!config.GetValue(key)) continue;
    changes.push_back({"tss.cfg " + key, valueJson(key), nullptr, Change::kAdminFile, config.path(),
                       [key](CliContext& store) {
                         store.adminConfig().RemoveValue(key);
                         return WriteAdminFile(store.adminConfig());
                       }});
  }
}

// A file the changes would replace although it cannot be read (the user may want to save it
// first), or a tss.cfg the player does not read.
std::optional<Refusal> RefuseChanges(CliContext& context, const std::vector<Change>& changes) {
  if (changes.empty()) return std::nullopt;
  const bool force = context.options().force;
  // Opening the store to write rewrites the master file whatever changes.
  std::optional<Refusal> refusal = RefuseReplacingUnreadable(context.MasterFile(), force);
  for (const Change& change : changes) {
    if (refusal) break;
    if (change.target == Change::kSettingsFile) {
      refusal = RefuseReplacingUnreadable(change.path, force);
    } else if (change.target == Change::kAdminFile) {
      refusal = RefuseAdminFileRewrite(context.adminConfig(), force);
    }
  }
  return refusal;
}

std::string ValueWord(const json& value) {
  if (value.is_null()) return "absent";
  if (value.is_string()) return value.get<std::string>();
  return DumpJson(value);
}

json ChangeJson(const Change& change) {
  return {{"what", change.what}, {"from", change.from}, {"to", change.to}};
}

std::string ChangeText(const Change& change) {
  return change.what + ": " + ValueWord(change.from) + " -> " + ValueWord(change.to);
}

// The changes made (checking: those that would be made), and the one that failed with why.
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
    for (size_t index = 0; index < applied; ++index)
      std::cout << ChangeText(changes[index]) << '\n';
    if (changes.empty()) std::cout << "every entry of the policy holds already; nothing changed\n";
  }
  if (failed) {
    const Change& change = changes[applied];
    Fail(kExitFailed, "could not apply " + ChangeText(change) +
                          (applied > 0 ? "; the changes before it stay applied" : ""));
    return FailChange(context,
                      change.target == Change::kSiteFolders ? "delete the folders of" : "write",
                      change.path);
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
  if (!text) return Fail(kExitFailed, FailureText("read", policyFile, LastSystemError()));
  PolicyError error;
  std::optional<Policy> policy = ParsePolicy(*text, &error);
  if (!policy) return InvalidPolicy(context, policyFile, error);
  // The changes are worked out on a store that writes nothing: when every entry holds, no
  // file is touched at all.
  if (std::optional<Refusal> refusal = context.OpenStore(StoreUse::kLocate)) return Fail(*refusal);
  if (std::optional<PolicyError> mismatch = CheckAgainstProfile(*policy, context.settings())) {
    return InvalidPolicy(context, policyFile, *mismatch);
  }
  std::vector<Change> changes;
  PlanGlobals(*policy, context, changes);
  PlanSites(*policy, context, changes);
  PlanRemovals(*policy, context, changes);
  PlanTrusted(*policy, context, changes);
  PlanAdmin(*policy, context, changes);
  if (std::optional<Refusal> refusal = RefuseChanges(context, changes)) return Fail(*refusal);
  size_t applied = 0;
  if (checkOnly || changes.empty()) {
    applied = changes.size();
  } else {
    if (std::optional<Refusal> refusal = context.OpenStore(StoreUse::kChange)) {
      return Fail(*refusal);
    }
    while (applied < changes.size() && changes[applied].apply(context)) ++applied;
  }
  return Report(context, changes, applied, checkOnly);
}

int RunExport(CliContext& context) {
  if (std::optional<Refusal> refusal = context.OpenStore(StoreUse::kShow)) return Fail(*refusal);
  SMSettingsManager& settings = context.settings();
  const std::string& master = SMSettingsManager::MasterDomain();
  Policy state;
  for (const std::string& name : settings.GetNames(master)) {
    if (name == kKnownSites.name || name == kTrustedPaths.name) continue;
    if (const SettingValue* value = settings.GetValue(master, name))
      state.globals.push_back(*value);
  }
  for (const std::string& name : KnownSiteNames(settings)) {
    if (name.empty() || name == master) continue;
    state.sites.push_back({name, ReadSiteChoice(settings, name, SitePermission::kStorage),
                           ReadSiteChoice(settings, name, SitePermission::kCameraSecure),
                           ReadSiteChoice(settings, name, SitePermission::kCameraOther),
                           ReadSiteChoice(settings, name, SitePermission::kPeerNetworking)});
  }
  state.trustedPresent = TrustedLocations(settings);
  // A tss.cfg the player does not read holds nothing in force.
  if (context.adminConfig().encoding() != SMAdminConfig::kUtf16Ignored) {
    for (const auto& [key, value] : context.adminConfig().entries()) {
      state.adminSet.emplace_back(key, value);
    }
  }
  std::cout << DumpJson(PolicyToJson(state), 2) << '\n';
  return kExitOk;
}
