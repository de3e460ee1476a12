// strings and admin: the string table, and the administrator file tss.cfg.
#include <filesystem>
#include <iostream>

#include "cli/commands.h"
#include "cli/json_codec.h"
#include "l10n/string_data.h"
#include "platform/file_io.h"

namespace {

std::optional<uint16_t> ParseLanguageId(const std::string& text) {
  std::string digits = text;
  if (digits.rfind("0x", 0) == 0 || digits.rfind("0X", 0) == 0) digits = digits.substr(2);
  if (digits.empty() || digits.size() > 4) return std::nullopt;
  for (char c : digits) {
    if (!std::isxdigit(static_cast<unsigned char>(c))) return std::nullopt;
  }
  return static_cast<uint16_t>(std::stoul(digits, nullptr, 16));
}

}  // namespace

// Unlike the program, the tool may be the first to write the file, so it makes the folder.
bool WriteAdminFile(SMAdminConfig& config) {
  ClearSystemError();
  std::error_code error;
  std::filesystem::path path(std::u8string(config.path().begin(), config.path().end()));
  std::filesystem::create_directories(path.parent_path(), error);
  return config.WriteToFile();
}

int RunStrings(CliContext& context, const std::string& languageText) {
  std::unique_ptr<SMStringTable> fixed;
  SMStringTable* strings = &context.strings();
  if (!languageText.empty()) {
    std::optional<uint16_t> languageId = ParseLanguageId(languageText);
    if (!languageId) {
      return Fail(kExitUsage, "--lang takes a language identifier in hex, such as 0x0407");
    }
    fixed = std::make_unique<SMFixedLanguageStringTable>(StringTableLanguageFor(*languageId));
    strings = fixed.get();
  }
  nlohmann::json texts = nlohmann::json::object();
  for (int row = 0; row < kStringCount; ++row) {
    uint32_t id = kStringIndex[row].id;
    const char* text = strings->GetString(static_cast<TextId>(id));
    if (context.options().json) {
      texts[std::to_string(id)] = text != nullptr ? text : "";
    } else {
      std::cout << id << '\t' << (text != nullptr ? text : "") << '\n';
    }
  }
  if (context.options().json) std::cout << DumpJson(texts, 2) << '\n';
  return kExitOk;
}

int RunAdmin(CliContext& context, const std::string& action, const std::string& key,
             const std::string& value) {
  SMAdminConfig& config = context.adminConfig();
  if (action != "set" && config.encoding() == SMAdminConfig::kUtf16Ignored) {
    std::cerr << "vpsettings: " << config.path()
              << " is UTF-16: the player does not read it, so nothing in it is in force\n";
  }
  if (action.empty()) {
    if (context.options().json) {
      nlohmann::json entries = nlohmann::json::object();
      for (const auto& [entryKey, entryValue] : config.entries()) entries[entryKey] = entryValue;
      std::cout << DumpJson(entries, 2) << '\n';
    } else {
      for (const auto& [entryKey, entryValue] : config.entries()) {
        std::cout << entryKey << '=' << entryValue << '\n';
      }
    }
    return kExitOk;
  }
  if (action == "get") {
    if (key.empty()) return Fail(kExitUsage, "admin get needs a KEY");
    std::optional<std::string> found = config.GetValue(key);
    if (!found) return Fail(kExitFailed, key + " is not set in " + config.path());
    std::cout << *found << '\n';
    return kExitOk;
  }
  if (action == "set") {
    if (std::optional<Refusal> refusal = RefuseAdminEntry(key, value)) return Fail(*refusal);
    if (std::optional<Refusal> refusal = RefuseAdminFileRewrite(config, context.options().force)) {
      return Fail(*refusal);
    }
    config.SetValue(key, value);
    if (!WriteAdminFile(config)) return FailChange(context, "write", config.path());
    return kExitOk;
  }
  return Fail(kExitUsage, "admin takes get KEY or set KEY VALUE, not \"" + action + "\"");
}
