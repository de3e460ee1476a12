// paths, show and set: the data locations and the global settings of one profile.
#include <charconv>
#include <iostream>
#include <utility>
#include <vector>

#include "cli/commands.h"
#include "cli/json_codec.h"
#include "platform/file_io.h"
#include "settings/setting_keys.h"

namespace {

// Also "nan" and "inf" in any case, which the caller refuses by name.
std::optional<double> ParseNumber(const std::string& text) {
  double number = 0.0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || text.empty()) {
    return std::nullopt;
  }
  return number;
}

std::optional<bool> ParseBooleanWord(const std::string& text) {
  if (text == "true") return true;
  if (text == "false") return false;
  return std::nullopt;
}

// The type a global key has now: in the master file as it is on disk, else the type of its
// default; nothing for a key the program does not know.
std::optional<std::string> CurrentType(CliContext& context, const std::string& name) {
  if (std::optional<std::string> bytes = ReadWholeFile(context.MasterFile())) {
    if (std::optional<DecodedSettings> master = DecodeSettingsStream(*bytes)) {
      for (const SettingValue& pair : master->pairs) {
        if (pair.name() == name) return TypeWord(pair);
      }
    }
  }
  if (const SettingKey* key = FindSettingKey(SettingFile::kMaster, name)) {
    return TypeWord(DefaultValueOf(*key));
  }
  return std::nullopt;
}

}  // namespace

int RunPaths(CliContext& context) {
  SMPlatformServices& platform = context.platform();
  SMSettingsManager& settings = context.settings();
  const std::vector<std::pair<const char*, std::string>> locations = {
      {"data-root", platform.PlayerDataRoot()},
      {"settings-folder", settings.settingsFolder()},
      {"master-file", context.MasterFile()},
      {"stored-data-folder", settings.storedDataFolder()},
      {"asset-cache", platform.AssetCacheFolder()},
      {"vx-cache", platform.VXCacheFolder()},
      {"private-data-folder", platform.PrivateDataFolder()},
      {"admin-file", AdminConfigFilePath(context.system())},
  };
  if (context.options().json) {
    nlohmann::json paths = nlohmann::json::object();
    for (const auto& [key, path] : locations) paths[key] = path;
    std::cout << DumpJson(paths, 2) << '\n';
  } else {
    for (const auto& [key, path] : locations) std::cout << key << '\t' << path << '\n';
  }
  return kExitOk;
}

int RunShow(CliContext& context) {
  if (std::optional<Refusal> refusal = context.OpenStore(StoreUse::kShow)) return Fail(*refusal);
  SMSettingsManager& settings = context.settings();
  const std::string& master = SMSettingsManager::MasterDomain();
  DecodedSettings globals{kMasterObjectName, {}};
  for (const std::string& name : settings.GetNames(master)) {
    if (const SettingValue* value = settings.GetValue(master, name))
      globals.pairs.push_back(*value);
  }
  if (context.options().json) {
    std::cout << DumpJson(SettingsToJson(globals)["pairs"], 2) << '\n';
    return kExitOk;
  }
  for (const SettingValue& value : globals.pairs) {
    std::cout << value.name() << '\t' << TypeWord(value) << '\t' << ValueText(value) << '\n';
  }
  return kExitOk;
}

int RunSet(CliContext& context, const std::string& name, const std::string& value,
           const std::string& type) {
  // The value is checked before the store opens for writing: opening it writes the master
  // file's missing defaults, and a refused value must leave the file as it was.
  std::string typeName = type;
  if (std::optional<std::string> existingType = CurrentType(context, name)) {
    if (!typeName.empty() && typeName != *existingType) {
      return Fail(kExitUsage, name + " is a " + *existingType + ", not a " + typeName);
    }
    typeName = *existingType;
  }
  if (typeName.empty()) return Fail(kExitUsage, name + " is not set yet: give its --type");
  std::optional<SettingValue> setting;
  if (typeName == "number") {
    if (std::optional<double> number = ParseNumber(value)) {
      if (std::optional<Refusal> refusal = RefuseNonFiniteNumber(name, *number)) {
        return Fail(*refusal);
      }
      setting = SettingValue::Number(name, *number);
    }
  } else if (typeName == "boolean") {
    if (std::optional<bool> flag = ParseBooleanWord(value)) {
      setting = SettingValue::Boolean(name, *flag);
    }
  } else if (typeName == "string") {
    setting = SettingValue::String(name, value);
  } else {
    return Fail(kExitUsage, name + " is an " + typeName + "; it cannot be set as one value");
  }
  if (!setting) {
    return Fail(kExitUsage, "\"" + value + "\" is not a " + typeName +
                                (typeName == "boolean" ? " (true or false)" : ""));
  }
  if (std::optional<Refusal> refusal = context.OpenStore(StoreUse::kChange)) {
    return Fail(*refusal);
  }
  if (!context.settings().SetValue(SMSettingsManager::MasterDomain(), *setting)) {
    return FailChange(context, "write", context.MasterFile());
  }
  return kExitOk;
}
