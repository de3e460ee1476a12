#pragma once

// What the tool refuses to do, for every command that writes. The program replaces an
// unreadable file with defaults, as the player does; the tool is run from scripts, so it stops
// instead and says why, and the user decides. Each check gives nothing when the command may go
// on, else the exit status and the message.

#include <optional>
#include <string>
#include <vector>

#include "admincfg/admin_config.h"

// Exit statuses of every command.
inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;

struct Refusal {
  int status;           // kExitUsage for an argument, kExitFailed for the state of a file
  std::string message;  // names the argument or the file, and why
};

// A folder named by source (an option or variable) that is not UTF-8 text, or on which one of
// the data paths built on it (dataPaths) came out cut short: the player's folders would then
// be another folder's, a parent's or a sibling's.
std::optional<Refusal> RefuseUnusableFolder(const std::string& source, const std::string& folder,
                                            const std::vector<std::string>& dataPaths);

// The empty name (the list of sites cannot hold it) and the master domain (it names the global
// settings; removing it would delete the whole settings folder) are never taken as a site.
std::optional<Refusal> RefuseNonSite(const std::string& site);

// NaN and the infinities: the player has no use for them and the pages cannot show them.
std::optional<Refusal> RefuseNonFiniteNumber(const std::string& name, double number);

// An entry that would read back from tss.cfg as another key or value, or as more entries.
std::optional<Refusal> RefuseAdminEntry(const std::string& key, const std::string& value);

// A tss.cfg the player does not read (UTF-16): rewriting it would leave a plain file holding
// only the entries the tool was given. --force rewrites it all the same.
std::optional<Refusal> RefuseAdminFileRewrite(const SMAdminConfig& config, bool force);

// A settings file that is there but cannot be read. A write would replace it with defaults
// (for a site, an empty file), so the user is asked to save it first; --force goes on.
std::optional<Refusal> RefuseReplacingUnreadable(const std::string& file, bool force);
// The same for a command that only shows the file's values: they cannot be shown.
std::optional<Refusal> RefuseShowingUnreadable(const std::string& file);

// "could not WHAT PATH: REASON", for a reason from LastSystemError (empty when it gave none).
std::string FailureText(const std::string& what, const std::string& path,
                        const std::string& reason);
