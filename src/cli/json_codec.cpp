#include "cli/json_codec.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace {

using nlohmann::json;

// The NaN the player itself writes.
constexpr uint64_t kQuietNaN = 0x7FF8000000000000ULL;

json NumberToJson(double number) {
  if (std::isnan(number)) return "NaN";
  if (std::isinf(number)) return number > 0 ? "Infinity" : "-Infinity";
  // Whole numbers print without a fraction; -0 must keep its sign, so it stays a double.
  if (number == std::floor(number) && std::fabs(number) < 9007199254740992.0 &&
      !(number == 0.0 && std::signbit(number))) {
    return static_cast<int64_t>(number);
  }
  return number;
}

struct ShapeError {
  std::string pointer;
  std::string what;
};

const json& Member(const json& object, const char* key, const std::string& pointer) {
  if (!object.is_object()) throw ShapeError{pointer, "expected an object"};
  auto found = object.find(key);
  if (found == object.end()) throw ShapeError{pointer, std::string("missing \"") + key + "\""};
  return *found;
}

std::string StringMember(const json& object, const char* key, const std::string& pointer) {
  const json& value = Member(object, key, pointer);
  if (!value.is_string()) throw ShapeError{pointer + "/" + key, "expected a string"};
  return value.get<std::string>();
}

double NumberFromJson(const json& value, const std::string& pointer) {
  if (value.is_number()) return value.get<double>();
  if (value.is_string()) {
    std::string text = value.get<std::string>();
    if (text == "NaN") return std::bit_cast<double>(kQuietNaN);
    if (text == "Infinity") return INFINITY;
    if (text == "-Infinity") return -INFINITY;
  }
  throw ShapeError{pointer, "expected a number, \"NaN\", \"Infinity\" or \"-Infinity\""};
}

SettingValue ValueFromJson(const json& node, const std::string& pointer, bool insideArray) {
  std::string name = StringMember(node, "name", pointer);
  const json& type = Member(node, "type", pointer);
  if (insideArray && type.is_number_integer()) {
    int64_t typeByte = type.get<int64_t>();
    if (typeByte < 4 || typeByte > 255) {
      throw ShapeError{pointer + "/type", "an element type number must be 4 to 255"};
    }
    return SettingValue::OfUnknownType(name, static_cast<uint32_t>(typeByte));
  }
  if (!type.is_string()) throw ShapeError{pointer + "/type", "expected a type name"};
  std::string typeName = type.get<std::string>();
  const std::string valuePointer = pointer + "/value";
  if (typeName == "number") {
    return SettingValue::Number(name, NumberFromJson(Member(node, "value", pointer), valuePointer));
  }
  if (typeName == "boolean") {
    const json& value = Member(node, "value", pointer);
    if (!value.is_boolean()) throw ShapeError{valuePointer, "expected true or false"};
    return SettingValue::Boolean(name, value.get<bool>());
  }
  if (typeName == "string") {
    return SettingValue::String(name, StringMember(node, "value", pointer));
  }
  if (typeName == "array" && !insideArray) {
    const json& value = Member(node, "value", pointer);
    if (!value.is_array()) throw ShapeError{valuePointer, "expected a list of values"};
    SettingArray elements;
    for (size_t i = 0; i < value.size(); ++i) {
      elements.Append(ValueFromJson(value[i], valuePointer + "/" + std::to_string(i), true));
    }
    return SettingValue::Array(name, std::move(elements));
  }
  throw ShapeError{pointer + "/type", insideArray && typeName == "array"
                                          ? "arrays do not nest"
                                          : "unknown type \"" + typeName + "\""};
}

}  // namespace

std::string ShortestNumberText(double number) {
  if (std::isnan(number)) return "NaN";
  if (std::isinf(number)) return number > 0 ? "Infinity" : "-Infinity";
  char text[64];
  auto result = std::to_chars(text, text + sizeof text, number);
  return std::string(text, result.ptr);
}

std::string TypeWord(const SettingValue& value) {
  switch (value.type()) {
    case kSettingNumber:
      return "number";
    case kSettingBoolean:
      return "boolean";
    case kSettingString:
      return "string";
    case kSettingArray:
      return "array";
    default:
      return std::to_string(value.type());
  }
}

json ValueToJson(const SettingValue& value) {
  json node = {{"name", value.name()}};
  switch (value.type()) {
    case kSettingNumber:
      node["type"] = "number";
      node["value"] = NumberToJson(value.number());
      break;
    case kSettingBoolean:
      node["type"] = "boolean";
      node["value"] = value.boolean();
      break;
    case kSettingString:
      node["type"] = "string";
      node["value"] = value.text();
      break;
    case kSettingArray: {
      node["type"] = "array";
      json elements = json::array();
      for (const SettingValue& element : value.array()) elements.push_back(ValueToJson(element));
      node["value"] = std::move(elements);
      break;
    }
    default:
      node["type"] = value.type();  // an element the player keeps without a payload
  }
  return node;
}

json SettingsToJson(const DecodedSettings& settings) {
  json pairs = json::array();
  for (const SettingValue& pair : settings.pairs) pairs.push_back(ValueToJson(pair));
  return {{"name", settings.objectName}, {"pairs", std::move(pairs)}};
}

std::string DumpJson(const json& node, int indent) {
  return node.dump(indent, ' ', false, json::error_handler_t::replace);
}

std::string ValueText(const SettingValue& value) {
  switch (value.type()) {
    case kSettingNumber:
      return ShortestNumberText(value.number());
    case kSettingBoolean:
      return value.boolean() ? "true" : "false";
    case kSettingString:
      return value.text();
    default:
      return DumpJson(ValueToJson(value)["value"]);
  }
}

std::optional<DecodedSettings> SettingsFromJson(std::string_view text, std::string* error) {
  json document;
  try {
    document = json::parse(text.begin(), text.end());
  } catch (const json::parse_error& failure) {
    *error = "malformed JSON at byte " + std::to_string(failure.byte) + ": " + failure.what();
    return std::nullopt;
  } catch (const json::exception& failure) {
    // A number too large for a double is reported this way, without a position.
    *error = std::string("malformed JSON: ") + failure.what();
    return std::nullopt;
  }
  try {
    DecodedSettings settings;
    settings.objectName = StringMember(document, "name", "");
    const json& pairs = Member(document, "pairs", "");
    if (!pairs.is_array()) throw ShapeError{"/pairs", "expected a list of pairs"};
    for (size_t i = 0; i < pairs.size(); ++i) {
      settings.pairs.push_back(ValueFromJson(pairs[i], "/pairs/" + std::to_string(i), false));
    }
    return settings;
  } catch (const ShapeError& failure) {
    *error = "wrong shape at " + (failure.pointer.empty() ? std::string("/") : failure.pointer) +
             ": " + failure.what;
    return std::nullopt;
  }
}
