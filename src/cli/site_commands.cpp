// sites, site, remove-site, clear and trusted: what the by-site, clear-data and trusted
// locations dialogs do, from a shell.
#include <algorithm>
#include <iostream>
#include <vector>

#include "app/user_prompts.h"
#include "cli/commands.h"
#include "cli/json_codec.h"
#include "cli/policy.h"
#include "dialogs/clear_data_logic.h"
#include "dialogs/storage_size.h"
#include "dialogs/trusted_locations_logic.h"
#include "settings/site_permissions.h"

namespace {

std::optional<SitePermission> PermissionFromWord(const std::string& word) {
  if (word == "storage") return SitePermission::kStorage;
  if (word == "cammic") return SitePermission::kCameraSecure;  // with kCameraOther
  if (word == "p2p") return SitePermission::kPeerNetworking;
  return std::nullopt;
}

// A new site gets its choice as the add-site dialog writes it, with nothing deleted; a known one
// changes as in its by-site list. The camera choice covers HTTPS and other pages alike.
ChoiceChange SetChoice(SMSettingsManager& settings, const std::string& site, bool isNew,
                       SitePermission permission, SiteChoice choice) {
  std::vector<SitePermission> permissions{permission};
  if (permission == SitePermission::kCameraSecure) {
    permissions.push_back(SitePermission::kCameraOther);
  }
  ChoiceChange outcome = ChoiceChange::kDone;
  for (SitePermission each : permissions) {
    ChoiceChange change = ChoiceChange::kNotWritten;
    if (!isNew) {
      change = ChangeSiteChoice(settings, site, each, choice);
    } else if (WriteSiteChoice(settings, site, each, choice)) {
      change = ChoiceChange::kDone;
    }
    if (outcome == ChoiceChange::kDone) outcome = change;
  }
  return outcome;
}

// The site's settings file; empty for a name that has none of its own.
std::string SiteFile(SMSettingsManager& settings, const std::string& site) {
  return settings.SettingsFileOf(site).value_or("");
}

struct SiteRow {
  std::string name;
  SiteChoice storage;
  SiteChoice cameraSecure;
  SiteChoice cameraOther;
  SiteChoice peerNetworking;
  uint64_t storedBytes;
};

SiteRow ReadSiteRow(SMSettingsManager& settings, const std::string& site) {
  return {site,
          ReadSiteChoice(settings, site, SitePermission::kStorage),
          ReadSiteChoice(settings, site, SitePermission::kCameraSecure),
          ReadSiteChoice(settings, site, SitePermission::kCameraOther),
          ReadSiteChoice(settings, site, SitePermission::kPeerNetworking),
          settings.GetSiteStoredBytes(settings.storedDataFolder(), site)};
}

void PrintRows(CliContext& context, const std::vector<SiteRow>& rows) {
  SMStringTable& strings = context.strings();
  if (context.options().json) {
    nlohmann::json list = nlohmann::json::array();
    for (const SiteRow& row : rows) {
      list.push_back(
          {{"name", row.name},
           {"storage", ChoiceWord(row.storage)},
           {"cammic",
            {{"https", ChoiceWord(row.cameraSecure)}, {"other", ChoiceWord(row.cameraOther)}}},
           {"p2p", ChoiceWord(row.peerNetworking)},
           {"storedBytes", row.storedBytes},
           {"stored", FormatStorageSize(strings, row.storedBytes)}});
    }
    std::cout << DumpJson(list, 2) << '\n';
    return;
  }
  for (const SiteRow& row : rows) {
    std::cout << row.name << '\t' << ChoiceWord(row.storage) << '\t' << ChoiceWord(row.cameraSecure)
              << '\t' << ChoiceWord(row.cameraOther) << '\t' << ChoiceWord(row.peerNetworking)
              << '\t' << FormatStorageSize(strings, row.storedBytes) << '\n';
  }
}

int ShowSite(CliContext& context, const std::string& site) {
  if (std::optional<Refusal> refusal = context.OpenStore(StoreUse::kShow)) return Fail(*refusal);
  SMSettingsManager& settings = context.settings();
  if (!IsKnownSite(settings, site)) return Fail(kExitFailed, "unknown site: " + site);
  if (std::optional<Refusal> refusal = RefuseShowingUnreadable(SiteFile(settings, site))) {
    return Fail(*refusal);
  }
  PrintRows(context, {ReadSiteRow(settings, site)});
  return kExitOk;
}

}  // namespace

int RunSites(CliContext& context) {
  if (std::optional<Refusal> refusal = context.OpenStore(StoreUse::kShow)) return Fail(*refusal);
  SMSettingsManager& settings = context.settings();
  std::vector<SiteRow> rows;
  int status = kExitOk;
  for (const std::string& name : KnownSiteNames(settings)) {
    if (name.empty()) continue;
    // A site whose file cannot be read is left out rather than shown with made-up choices.
    if (std::optional<Refusal> refusal = RefuseShowingUnreadable(SiteFile(settings, name))) {
      status = Fail(*refusal);
      continue;
    }
    rows.push_back(ReadSiteRow(settings, name));
  }
  PrintRows(context, rows);
  return status;
}

int RunSite(CliContext& context, const std::string& site, const std::string& permission,
            const std::string& word) {
  if (std::optional<Refusal> refusal = RefuseNonSite(site)) return Fail(*refusal);
  if (permission.empty()) return ShowSite(context, site);
  std::optional<SiteChoice> choice = ChoiceFromWord(word);
  if (!choice) {
    return Fail(kExitUsage, "site SITE " + permission + " needs a choice: ask, allow or block");
  }
  std::optional<SitePermission> stored = PermissionFromWord(permission);
  if (!stored) {
    return Fail(kExitUsage,
                "the permission must be storage, cammic or p2p, not \"" + permission + "\"");
  }
  if (std::optional<Refusal> refusal = context.OpenStore(StoreUse::kChange)) {
    return Fail(*refusal);
  }
  SMSettingsManager& settings = context.settings();
  const std::string siteFile = SiteFile(settings, site);
  if (std::optional<Refusal> refusal =
          RefuseReplacingUnreadable(siteFile, context.options().force)) {
    return Fail(*refusal);
  }
  bool isNew = !IsKnownSite(settings, site);
  if (isNew && !settings.AddSite(site)) return FailChange(context, "write", siteFile);
  switch (SetChoice(settings, site, isNew, *stored, *choice)) {
    case ChoiceChange::kNotWritten:
      return FailChange(context, "write", siteFile);
    case ChoiceChange::kDataNotDeleted:
      return FailChange(context, "delete the stored data of", site);
    case ChoiceChange::kDone:
      break;
  }
  return kExitOk;
}

int RunRemoveSite(CliContext& context, const std::string& site, bool keepSettings) {
  if (std::optional<Refusal> refusal = RefuseNonSite(site)) return Fail(*refusal);
  if (std::optional<Refusal> refusal = context.OpenStore(StoreUse::kChange)) {
    return Fail(*refusal);
  }
  SMSettingsManager& settings = context.settings();
  const bool known = IsKnownSite(settings, site);
  if (!settings.RemoveSite(site, !keepSettings)) {
    return FailChange(context, "write", context.MasterFile());
  }
  if (!known) {
    std::cerr << "vpsettings: " << site
              << " is not a known site: its folders were deleted, the list of sites is unchanged\n";
  }
  return kExitOk;
}

int RunClear(CliContext& context, bool licences) {
  if (std::optional<Refusal> refusal = context.OpenStore(StoreUse::kChange)) {
    return Fail(*refusal);
  }
  // The dialog's error boxes become lines on the standard error stream, each followed by what
  // failed and why.
  class ErrorLines : public SMUserPrompts {
   public:
    explicit ErrorLines(CliContext& context) : context_(context) {}
    bool ConfirmBox(TextId, TextId, TextId) override { return true; }
    void ErrorBox(TextId textId, TextId) override {
      const char* text = context_.strings().GetString(textId);
      Fail(kExitFailed, text != nullptr ? text : "deletion failed");
      FailChange(context_, "delete",
                 textId == TextId::kLicencesNotDeleted ? context_.privateData().path()
                                                       : context_.settings().dataRoot());
    }

   private:
    CliContext& context_;
  } errors(context);
  ClearDataOutcome outcome = ClearAllData(context.settings(), context.platform(),
                                          context.privateData(), errors, {true, licences});
  if (outcome.nothingRecorded) {
    std::cerr << "vpsettings: no sites are recorded; nothing was deleted\n";
    return kExitOk;
  }
  return outcome.siteDataFailed || outcome.licenceFilesFailed ? kExitFailed : kExitOk;
}

int RunTrusted(CliContext& context, const std::string& action, const std::string& location) {
  if (!action.empty() && location.empty()) {
    return Fail(kExitUsage, "trusted " + action + " needs a PATH");
  }
  if (std::optional<Refusal> refusal =
          context.OpenStore(action.empty() ? StoreUse::kShow : StoreUse::kChange)) {
    return Fail(*refusal);
  }
  SMSettingsManager& settings = context.settings();
  if (action.empty()) {
    std::vector<std::string> locations = TrustedLocations(settings);
    if (context.options().json) {
      std::cout << DumpJson(locations, 2) << '\n';
    } else {
      for (const std::string& path : locations) std::cout << path << '\n';
    }
    return kExitOk;
  }
  TrustedChange change;
  if (action == "add") {
    change = AddTrustedLocation(settings, location);
    if (change == TrustedChange::kAlreadyListed) {
      std::cerr << "vpsettings: already trusted: " << location << '\n';
      return kExitOk;
    }
  } else if (action == "remove") {
    std::vector<std::string> locations = TrustedLocations(settings);
    if (std::find(locations.begin(), locations.end(), location) == locations.end()) {
      return Fail(kExitFailed, "not a trusted location: " + location);
    }
    change = RemoveTrustedLocations(settings, {location});
  } else {
    return Fail(kExitUsage, "trusted takes add or remove, not \"" + action + "\"");
  }
  if (change == TrustedChange::kWriteFailed) {
    return FailChange(context, "write", context.MasterFile());
  }
  return kExitOk;
}
