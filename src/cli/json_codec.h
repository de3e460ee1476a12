#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "cli/settings_stream.h"

// The shortest text that reads back to the same double; "NaN", "Infinity", "-Infinity".
std::string ShortestNumberText(double number);
// The type word of a value: number, boolean, string, array (unknown types: their number).
std::string TypeWord(const SettingValue& value);

nlohmann::json ValueToJson(const SettingValue& value);
nlohmann::json SettingsToJson(const DecodedSettings& settings);
// A value as one line of text: numbers and booleans as words, strings as they are, arrays as
// their compact JSON.
std::string ValueText(const SettingValue& value);
// Serialises JSON, replacing bytes that are not UTF-8.
std::string DumpJson(const nlohmann::json& json, int indent = -1);

// Reads the JSON that SettingsToJson writes; on failure a message naming the position.
std::optional<DecodedSettings> SettingsFromJson(std::string_view text, std::string* error);
