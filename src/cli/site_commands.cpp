// sites, site, remove-site, clear and trusted: what the by-site, clear-data and trusted
// locations dialogs do, from a shell.
#include <algorithm>
#include <iostream>

#include "app/user_prompts.h"
#include "cli/commands.h"
#include "cli/json_codec.h"
#include "dialogs/clear_data_logic.h"
#include "dialogs/storage_size.h"
#include "dialogs/trusted_locations_logic.h"
#include "settings/site_permissions.h"

namespace {

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

std::optional<SiteChoice> ChoiceFromWord(const std::string& word) {
  if (word == "ask") return kChoiceAsk;
  if (word == "allow") return kChoiceAllow;
  if (word == "block") return kChoiceBlock;
  return std::nullopt;
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

}  // namespace

int RunSites(CliContext& context) {
  SMSettingsManager& settings = context.settings();
  std::vector<SiteRow> rows;
  for (const std::string& name : KnownSiteNames(settings)) {
    if (!name.empty()) rows.push_back(ReadSiteRow(settings, name));
  }
  PrintRows(context, rows);
  return kExitOk;
}

int RunSite(CliContext& context, const std::string& site, const std::string& permission,
            const std::string& word) {
  SMSettingsManager& settings = context.settings();
  if (permission.empty()) {
    if (!IsKnownSite(settings, site)) return Fail(kExitFailed, "unknown site: " + site);
    PrintRows(context, {ReadSiteRow(settings, site)});
    return kExitOk;
  }
  std::optional<SiteChoice> choice = ChoiceFromWord(word);
  if (!choice)
    return Fail(kExitUsage, "the choice must be ask, allow or block, not \"" + word + "\"");
  bool isNew = !IsKnownSite(settings, site);
  if (isNew && !settings.AddSite(site)) return Fail(kExitFailed, "could not add the site " + site);
  bool written = false;
  if (permission == "storage") {
    written = WriteSiteChoice(settings, site, SitePermission::kStorage, *choice);
    // Blocking an existing site deletes what it stored at once; its settings stay.
    if (written && !isNew && *choice == kChoiceBlock) written = settings.RemoveSite(site, false);
  } else if (permission == "cammic") {
    bool secure = WriteSiteChoice(settings, site, SitePermission::kCameraSecure, *choice);
    bool other = WriteSiteChoice(settings, site, SitePermission::kCameraOther, *choice);
    written = secure && other;
  } else if (permission == "p2p") {
    written = WriteSiteChoice(settings, site, SitePermission::kPeerNetworking, *choice);
  } else {
    return Fail(kExitUsage,
                "the permission must be storage, cammic or p2p, not \"" + permission + "\"");
  }
  if (!written) return Fail(kExitFailed, "could not write the settings of " + site);
  return kExitOk;
}

int RunRemoveSite(CliContext& context, const std::string& site, bool keepSettings) {
  if (!context.settings().RemoveSite(site, !keepSettings)) {
    return Fail(kExitFailed, "could not remove all of " + site);
  }
  return kExitOk;
}

int RunClear(CliContext& context, bool licences) {
  // The dialog's error boxes become lines on the standard error stream.
  class ErrorLines : public SMUserPrompts {
   public:
    explicit ErrorLines(SMStringTable& strings) : strings_(strings) {}
    bool ConfirmBox(TextId, TextId, TextId) override { return true; }
    void ErrorBox(TextId textId, TextId) override {
      const char* text = strings_.GetString(textId);
      Fail(kExitFailed, text != nullptr ? text : "deletion failed");
    }

   private:
    SMStringTable& strings_;
  } errors(context.strings());
  ClearDataOutcome outcome = ClearAllData(context.settings(), context.platform(),
                                          context.privateData(), errors, {true, licences});
  if (outcome.nothingRecorded) {
    std::cerr << "vpsettings: no sites are recorded; nothing was deleted\n";
    return kExitOk;
  }
  return outcome.siteDataFailed || outcome.licenceFilesFailed ? kExitFailed : kExitOk;
}

int RunTrusted(CliContext& context, const std::string& action, const std::string& location) {
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
  if (location.empty()) return Fail(kExitUsage, "trusted " + action + " needs a PATH");
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
    return Fail(kExitFailed, "could not write the master settings file");
  }
  return kExitOk;
}
