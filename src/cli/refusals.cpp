#include "cli/refusals.h"

#include <cerrno>
#include <cmath>

#include "cli/settings_stream.h"
#include "platform/file_io.h"
#include "platform/platform_services.h"
#include "settings/settings_manager.h"

namespace {

// Why a settings file that is there cannot be read; nothing when it reads, is absent or is
// empty (an empty file holds nothing to lose, and the player takes it for an absent one).
std::optional<std::string> UnreadableReason(const std::string& file) {
  ClearSystemError();
  std::optional<std::string> bytes = ReadWholeFile(file);
  if (!bytes) {
    if (errno == ENOENT || errno == ENOTDIR) return std::nullopt;
    return LastSystemError();
  }
  if (bytes->empty() || DecodeSettingsStream(*bytes)) return std::nullopt;
  return "it is not a settings file the player can read";
}

const char* FaultText(AdminEntryFault fault) {
  switch (fault) {
    case AdminEntryFault::kEmptyKey:
      return "the key is empty";
    case AdminEntryFault::kEmptyValue:
      return "the value is empty";
    case AdminEntryFault::kLineBreakOrNul:
      return "a line break would start another entry, and a NUL byte would cut the line short";
    case AdminEntryFault::kEqualsInKey:
      return "the key holds '=', so the file would read back another key and value";
    case AdminEntryFault::kTrimmedAtEnd:
      return "a blank, control or non-ASCII character at the start or end of the key or value "
             "would be dropped when the file is read";
  }
  return "";
}

}  // namespace

std::optional<Refusal> RefuseUnusableFolder(const std::string& source, const std::string& folder,
                                            const std::vector<std::string>& dataPaths) {
  if (!IsUtf8Text(folder)) {
    return Refusal{kExitUsage, "the folder given by " + source + " is not UTF-8 text"};
  }
  for (const std::string& dataPath : dataPaths) {
    if (IsCutDataPath(dataPath)) {
      return Refusal{kExitUsage, "the folder given by " + source +
                                     " is too long: the player's folders built on it would be "
                                     "cut short"};
    }
  }
  return std::nullopt;
}

std::optional<Refusal> RefuseNonSite(const std::string& site) {
  if (site.empty()) return Refusal{kExitUsage, "the site name is empty"};
  if (site == SMSettingsManager::MasterDomain()) {
    return Refusal{kExitUsage, site + " names the global settings, not a site"};
  }
  return std::nullopt;
}

std::optional<Refusal> RefuseNonFiniteNumber(const std::string& name, double number) {
  if (std::isfinite(number)) return std::nullopt;
  return Refusal{kExitUsage, name + " takes a finite number, not NaN or an infinity"};
}

std::optional<Refusal> RefuseAdminEntry(const std::string& key, const std::string& value) {
  std::optional<AdminEntryFault> fault = FindEntryFault(key, value);
  if (!fault) return std::nullopt;
  return Refusal{kExitUsage, std::string("refused for tss.cfg: ") + FaultText(*fault)};
}

std::optional<Refusal> RefuseAdminFileRewrite(const SMAdminConfig& config, bool force) {
  if (force || config.encoding() != SMAdminConfig::kUtf16Ignored) return std::nullopt;
  return Refusal{kExitFailed, config.path() +
                                  " is UTF-16, which the player does not read; writing it "
                                  "would leave only the entries given here (--force does so)"};
}

std::optional<Refusal> RefuseReplacingUnreadable(const std::string& file, bool force) {
  if (force) return std::nullopt;
  std::optional<std::string> reason = UnreadableReason(file);
  if (!reason) return std::nullopt;
  return Refusal{kExitFailed, file + " cannot be read (" + *reason +
                                  ") and this command would replace it: save it elsewhere first, "
                                  "or give --force"};
}

std::optional<Refusal> RefuseShowingUnreadable(const std::string& file) {
  std::optional<std::string> reason = UnreadableReason(file);
  if (!reason) return std::nullopt;
  return Refusal{kExitFailed, file + " cannot be read (" + *reason + "); it is left as it is"};
}

std::string FailureText(const std::string& what, const std::string& path,
                        const std::string& reason) {
  return "could not " + what + " " + path + ": " +
         (reason.empty() ? "the system gave no reason" : reason);
}
