#pragma once

#include <string>

#include "cli/cli_context.h"
#include "cli/refusals.h"

// Prints "vpsettings: <message>" on stderr and returns status.
int Fail(int status, const std::string& message);
int Fail(const Refusal& refusal);
// A failed change: prints each deletion or folder creation the platform saw fail, with its
// reason, or else "could not WHAT PATH: REASON"; returns kExitFailed.
int FailChange(CliContext& context, const std::string& what, const std::string& path);

// Writes tss.cfg, making its folder when it is missing.
bool WriteAdminFile(SMAdminConfig& config);

int RunDump(CliContext& context, const std::string& file);
int RunEncode(CliContext& context, const std::string& file);
int RunPaths(CliContext& context);
int RunShow(CliContext& context);
int RunSet(CliContext& context, const std::string& name, const std::string& value,
           const std::string& type);
int RunSites(CliContext& context);
int RunSite(CliContext& context, const std::string& site, const std::string& permission,
            const std::string& choice);
int RunRemoveSite(CliContext& context, const std::string& site, bool keepSettings);
int RunClear(CliContext& context, bool licences);
int RunTrusted(CliContext& context, const std::string& action, const std::string& location);
int RunStrings(CliContext& context, const std::string& languageId);
int RunApply(CliContext& context, const std::string& policyFile, bool checkOnly);
int RunExport(CliContext& context);
int RunAdmin(CliContext& context, const std::string& action, const std::string& key,
             const std::string& value);
