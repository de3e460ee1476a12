// vpsettings: the player's settings from a shell, for administrators and for inspecting files.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "cli/commands.h"

#ifdef _WIN32
#include <windows.h>
// windows.h first: the shell headers need its types.
#include <shellapi.h>

#include "platform/win32/utf16.h"
#endif

namespace {

// CLI11 wants the arguments in reverse order, without the program name.
std::vector<std::string> ReversedArguments(int argc, char** argv) {
  std::vector<std::string> arguments;
#ifdef _WIN32
  (void)argc;
  (void)argv;
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = count - 1; i >= 1; --i) arguments.push_back(ToUtf8(wide[i]).value_or(""));
  LocalFree(wide);
#else
  for (int i = argc - 1; i >= 1; --i) arguments.emplace_back(argv[i]);
#endif
  return arguments;
}

// The global options that take a value.
constexpr const char* kValueOptions[] = {"--appdata", "--local-appdata", "--system-dir",
                                         "--wineprefix"};

// The first word that is neither a global option, an option's value nor a command.
std::optional<std::string> UnknownCommand(CLI::App& app, const std::vector<std::string>& reversed) {
  for (auto word = reversed.rbegin(); word != reversed.rend(); ++word) {
    if (word->rfind("-", 0) == 0) {
      bool takesValue = std::find(std::begin(kValueOptions), std::end(kValueOptions), *word) !=
                        std::end(kValueOptions);
      if (takesValue && std::next(word) != reversed.rend()) ++word;
      continue;
    }
    bool known =
        !app.get_subcommands([&](CLI::App* command) { return command->get_name() == *word; })
             .empty();
    if (!known) return *word;
    return std::nullopt;
  }
  return std::nullopt;
}

struct Arguments {
  std::string file, name, value, type, site, permission, choice, action, key, path, language;
  bool keepSettings = false;
  bool licences = false;
  bool checkOnly = false;
};

}  // namespace

int Fail(int status, const std::string& message) {
  std::cerr << "vpsettings: " << message << '\n';
  return status;
}

int main(int argc, char** argv) {
  CLI::App app{"The Vantrel Player's settings from a shell.", "vpsettings"};
  app.require_subcommand(1);
  GlobalOptions options;
  app.add_option("--appdata", options.appData, "roaming application-data folder");
  app.add_option("--local-appdata", options.localAppData, "local application-data folder");
  app.add_option("--system-dir", options.systemDir,
                 "folder that holds Tessalin/Vantrel/tss.cfg (the 32-bit system folder)");
  app.add_option("--wineprefix", options.winePrefix,
                 "take the three folders of the default user of this Wine prefix");
  app.add_flag("--json", options.json, "JSON on standard output");

  Arguments args;
  auto* dump = app.add_subcommand("dump", "decode one settings.sol");
  dump->add_option("FILE", args.file, "the settings.sol file")->required();
  auto* encode =
      app.add_subcommand("encode", "write the JSON of dump --json as a settings.sol stream");
  encode->add_option("FILE", args.file, "the JSON file (standard input when absent)");
  auto* paths = app.add_subcommand("paths", "every data location");
  auto* show = app.add_subcommand("show", "the global settings");
  auto* set = app.add_subcommand("set", "set a global number, boolean or string");
  set->add_option("NAME", args.name)->required();
  set->add_option("VALUE", args.value)->required();
  set->add_option("--type", args.type, "type of a key that is not set yet")
      ->check(CLI::IsMember({"number", "boolean", "string"}));
  auto* sites = app.add_subcommand("sites", "every known site with its choices and stored bytes");
  auto* site = app.add_subcommand("site", "show one site, or set one of its permissions");
  site->add_option("SITE", args.site)->required();
  site->add_option("PERMISSION", args.permission, "storage, cammic or p2p")
      ->check(CLI::IsMember({"storage", "cammic", "p2p"}));
  site->add_option("CHOICE", args.choice, "ask, allow or block")
      ->check(CLI::IsMember({"ask", "allow", "block"}));
  auto* removeSite = app.add_subcommand("remove-site", "delete a site's data and settings");
  removeSite->add_option("SITE", args.site)->required();
  removeSite->add_flag("--keep-settings", args.keepSettings, "delete only the stored data");
  auto* clear = app.add_subcommand("clear", "delete all site data and settings");
  clear->add_flag("--licenses", args.licences, "also delete the licence files");
  auto* trusted = app.add_subcommand("trusted", "list, add or remove trusted locations");
  trusted->add_option("ACTION", args.action, "add or remove")
      ->check(CLI::IsMember({"add", "remove"}));
  trusted->add_option("PATH", args.path);
  auto* strings = app.add_subcommand("strings", "the string table");
  strings->add_option("--lang", args.language, "Windows language identifier in hex, e.g. 0x0407");
  auto* admin = app.add_subcommand("admin", "read or change tss.cfg");
  admin->add_option("ACTION", args.action, "get or set")->check(CLI::IsMember({"get", "set"}));
  admin->add_option("KEY", args.key);
  admin->add_option("VALUE", args.value);
  auto* apply = app.add_subcommand("apply", "bring the profile to the state a policy describes");
  apply->add_option("POLICY", args.file, "the policy JSON file (- for standard input)")->required();
  apply->add_flag("--check", args.checkOnly, "write nothing; report what would change");
  apply->add_flag("--json", options.json, "JSON on standard output");
  auto* exportState = app.add_subcommand("export", "the profile's state as a policy");

  std::vector<std::string> arguments = ReversedArguments(argc, argv);
  if (std::optional<std::string> unknown = UnknownCommand(app, arguments)) {
    return Fail(kExitUsage, "unknown command \"" + *unknown + "\" (see vpsettings --help)");
  }
  try {
    app.parse(arguments);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // --help, printed on stdout
    return Fail(kExitUsage, error.what());
  }
  if (site->parsed() && !args.permission.empty() && args.choice.empty()) {
    return Fail(kExitUsage,
                "site SITE " + args.permission + " needs a choice: ask, allow or block");
  }
  if (admin->parsed() && args.action == "get" && args.key.empty()) {
    return Fail(kExitUsage, "admin get needs a KEY");
  }
  if (admin->parsed() && args.action == "set" && (args.key.empty() || args.value.empty())) {
    return Fail(kExitUsage, "admin set needs a KEY and a VALUE");
  }

  CliContext context(options);
  if (dump->parsed()) return RunDump(context, args.file);
  if (encode->parsed()) return RunEncode(context, args.file);
  if (strings->parsed()) return RunStrings(context, args.language);
  if (std::optional<std::string> missing = context.ResolveFolders()) {
    return Fail(kExitUsage, *missing);
  }
  if (paths->parsed()) return RunPaths(context);
  if (show->parsed()) return RunShow(context);
  if (set->parsed()) return RunSet(context, args.name, args.value, args.type);
  if (sites->parsed()) return RunSites(context);
  if (site->parsed()) return RunSite(context, args.site, args.permission, args.choice);
  if (removeSite->parsed()) return RunRemoveSite(context, args.site, args.keepSettings);
  if (clear->parsed()) return RunClear(context, args.licences);
  if (apply->parsed()) return RunApply(context, args.file, args.checkOnly);
  if (exportState->parsed()) return RunExport(context);
  if (trusted->parsed()) return RunTrusted(context, args.action, args.path);
  return RunAdmin(context, args.action, args.key, args.value);
}
