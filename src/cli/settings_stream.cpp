#include "cli/settings_stream.h"

#include "settings/settings_reader.h"
#include "settings/settings_writer.h"

std::optional<DecodedSettings> DecodeSettingsStream(std::string_view bytes) {
  SMSettingsReader reader(bytes);
  DecodedSettings settings;
  std::unique_ptr<SettingsTable> table = reader.Parse(&settings.objectName);
  if (!table) return std::nullopt;
  table->ForEach([&](const SettingValue& value) { settings.pairs.push_back(value); });
  return settings;
}

std::string EncodeSettingsStream(const DecodedSettings& settings) {
  SettingsTable table;
  for (const SettingValue& pair : settings.pairs) table.Insert(pair);
  return SerializeSettings(table, settings.objectName);
}
