// vpsettings: the player's settings from a shell, for administrators and for inspecting files.
#include <CLI/CLI.hpp>
#include <iostream>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "cli/commands.h"
#include "platform/file_io.h"

#ifdef _WIN32
#include <windows.h>
// windows.h first: the shell headers need its types.
#include <shellapi.h>

#include "platform/win32/utf16.h"
#endif

namespace {

// Every argument a command can take.
struct Arguments {
  std::string file, name, value, type, site, permission, choice, action, key, path, language;
  bool keepSettings = false;
  bool licences = false;
  bool checkOnly = false;
};

// One command: its word, what it does, its own arguments and how it runs. A command that
// works on a profile needs its folders; the others only files named on the command line or
// the program's own strings.
struct Command {
  const char* name;
  const char* description;
  void (*declare)(CLI::App& command, Arguments& args);
  int (*run)(CliContext& context, const Arguments& args);
  bool needsProfile;
};

void NoArguments(CLI::App&, Arguments&) {}

const Command kCommands[] = {
    {"dump", "decode one settings.sol",
     [](CLI::App& command, Arguments& args) {
       command.add_option("FILE", args.file, "the settings.sol file")->required();
     },
     [](CliContext& context, const Arguments& args) { return RunDump(context, args.file); }, false},
    {"encode", "write the JSON of dump --json as a settings.sol stream",
     [](CLI::App& command, Arguments& args) {
       command.add_option("FILE", args.file, "the JSON file (standard input when absent)");
     },
     [](CliContext& context, const Arguments& args) { return RunEncode(context, args.file); },
     false},
    {"strings", "the string table",
     [](CLI::App& command, Arguments& args) {
       command.add_option("--lang", args.language,
                          "Windows language identifier in hex, e.g. 0x0407");
     },
     [](CliContext& context, const Arguments& args) { return RunStrings(context, args.language); },
     false},
    {"paths", "every data location", NoArguments,
     [](CliContext& context, const Arguments&) { return RunPaths(context); }, true},
    {"show", "the global settings", NoArguments,
     [](CliContext& context, const Arguments&) { return RunShow(context); }, true},
    {"set", "set a global number, boolean or string",
     [](CLI::App& command, Arguments& args) {
       command.add_option("NAME", args.name)->required();
       command.add_option("VALUE", args.value)->required();
       command.add_option("--type", args.type, "type of a key that is not set yet")
           ->check(CLI::IsMember({"number", "boolean", "string"}));
     },
     [](CliContext& context, const Arguments& args) {
       return RunSet(context, args.name, args.value, args.type);
     },
     true},
    {"sites", "every known site with its choices and stored bytes", NoArguments,
     [](CliContext& context, const Arguments&) { return RunSites(context); }, true},
    {"site", "show one site, or set one of its permissions",
     [](CLI::App& command, Arguments& args) {
       command.add_option("SITE", args.site)->required();
       command.add_option("PERMISSION", args.permission, "storage, cammic or p2p")
           ->check(CLI::IsMember({"storage", "cammic", "p2p"}));
       command.add_option("CHOICE", args.choice, "ask, allow or block")
           ->check(CLI::IsMember({"ask", "allow", "block"}));
     },
     [](CliContext& context, const Arguments& args) {
       return RunSite(context, args.site, args.permission, args.choice);
     },
     true},
    {"remove-site", "delete a site's data and settings",
     [](CLI::App& command, Arguments& args) {
       command.add_option("SITE", args.site)->required();
       command.add_flag("--keep-settings", args.keepSettings, "delete only the stored data");
     },
     [](CliContext& context, const Arguments& args) {
       return RunRemoveSite(context, args.site, args.keepSettings);
     },
     true},
    {"clear", "delete all site data and settings",
     [](CLI::App& command, Arguments& args) {
       command.add_flag("--licenses", args.licences, "also delete the licence files");
     },
     [](CliContext& context, const Arguments& args) { return RunClear(context, args.licences); },
     true},
    {"trusted", "list, add or remove trusted locations",
     [](CLI::App& command, Arguments& args) {
       command.add_option("ACTION", args.action, "add or remove")
           ->check(CLI::IsMember({"add", "remove"}));
       command.add_option("PATH", args.path);
     },
     [](CliContext& context, const Arguments& args) {
       return RunTrusted(context, args.action, args.path);
     },
     true},
    {"admin", "read or change tss.cfg",
     [](CLI::App& command, Arguments& args) {
       command.add_option("ACTION", args.action, "get or set")
           ->check(CLI::IsMember({"get", "set"}));
       command.add_option("KEY", args.key);
       command.add_option("VALUE", args.value);
     },
     [](CliContext& context, const Arguments& args) {
       return RunAdmin(context, args.action, args.key, args.value);
     },
     true},
    {"apply", "bring the profile to the state a policy file describes",
     [](CLI::App& command, Arguments& args) {
       command.add_option("POLICY", args.file, "the policy (- for standard input)")->required();
       command.add_flag("--check", args.checkOnly, "write nothing; report what would change");
     },
     [](CliContext& context, const Arguments& args) {
       return RunApply(context, args.file, args.checkOnly);
     },
     true},
    {"export", "the profile's state as a policy", NoArguments,
     [](CliContext& context, const Arguments&) { return RunExport(context); }, true},
};

// The options every command takes, before or after the command's word.
void DeclareGlobalOptions(CLI::App& app, GlobalOptions& options) {
  for (const FolderOption* folder : kFolderOptions) {
    app.add_option(folder->option, options.*folder->value, folder->help);
  }
  app.add_flag("--json", options.json, "JSON on standard output");
  app.add_flag("--force", options.force,
               "replace a settings or administrator file that cannot be read");
  app.fallthrough();
}

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

// The first word that is neither a global option, an option's value nor a command.
std::optional<std::string> UnknownCommand(CLI::App& app, const std::vector<std::string>& reversed) {
  for (auto word = reversed.rbegin(); word != reversed.rend(); ++word) {
    if (word->starts_with("-")) {
      const CLI::Option* option = app.get_option_no_throw(*word);
      if (option != nullptr && option->get_items_expected_min() > 0 &&
          std::next(word) != reversed.rend()) {
        ++word;
      }
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

// Parses the arguments into options and args; the command chosen, or an exit status.
std::variant<const Command*, int> Parse(int argc, char** argv, GlobalOptions& options,
                                        Arguments& args) {
  CLI::App app{"The Vantrel Player's settings from a shell.", "vpsettings"};
  app.require_subcommand(1);
  DeclareGlobalOptions(app, options);
  for (const Command& command : kCommands) {
    command.declare(*app.add_subcommand(command.name, command.description), args);
  }
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
  for (const Command& command : kCommands) {
    if (app.got_subcommand(command.name)) return &command;
  }
  return Fail(kExitUsage, "no command (see vpsettings --help)");
}

}  // namespace

int Fail(int status, const std::string& message) {
  std::cerr << "vpsettings: " << message << '\n';
  return status;
}

int Fail(const Refusal& refusal) {
  return Fail(refusal.status, refusal.message);
}

int FailChange(CliContext& context, const std::string& what, const std::string& path) {
  std::vector<NotedFailure> failures = context.TakeFailures();
  if (failures.empty()) return Fail(kExitFailed, FailureText(what, path, LastSystemError()));
  for (const NotedFailure& failure : failures) {
    Fail(kExitFailed, FailureText(failure.what, failure.path, failure.reason));
  }
  return kExitFailed;
}

int main(int argc, char** argv) {
  GlobalOptions options;
  Arguments args;
  std::variant<const Command*, int> parsed = Parse(argc, argv, options, args);
  if (const int* status = std::get_if<int>(&parsed)) return *status;
  const Command& command = *std::get<const Command*>(parsed);
  CliContext context(options);
  if (command.needsProfile) {
    if (std::optional<Refusal> missing = context.ResolveFolders()) return Fail(*missing);
  }
  return command.run(context, args);
}
