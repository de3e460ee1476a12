#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/setting_value.h"

// One settings.sol stream: its object name and its pairs in the order the file holds them.
struct DecodedSettings {
  std::string objectName;
  std::vector<SettingValue> pairs;
};

// Parses a settings.sol stream as the player does (its diagnostics go to stderr).
std::optional<DecodedSettings> DecodeSettingsStream(std::string_view bytes);
// Inserts the pairs into a settings table in the given order (so the table's own order decides
// the file's order) and writes the stream.
std::string EncodeSettingsStream(const DecodedSettings& settings);
