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

// Reads the settings JSON node by node. The first place where the document does not have the
// expected shape is kept, and every step after it gives up.
class ShapeReader {
 public:
  std::optional<DecodedSettings> Read(const json& document) {
    DecodedSettings settings;
    std::optional<std::string> objectName = StringMember(document, "name", "");
    if (!objectName) return std::nullopt;
    const json* pairs = Member(document, "pairs", "");
    if (pairs == nullptr) return std::nullopt;
    if (!pairs->is_array()) return Fail("/pairs", "expected a list of pairs");
    settings.objectName = std::move(*objectName);
    for (size_t i = 0; i < pairs->size(); ++i) {
      std::optional<SettingValue> pair =
          ValueFromJson((*pairs)[i], "/pairs/" + std::to_string(i), false);
      if (!pair) return std::nullopt;
      settings.pairs.push_back(std::move(*pair));
    }
    return settings;
  }

  // "wrong shape at POINTER: WHAT" for the first place that went wrong.
  std::string Message() const {
    return "wrong shape at " + (pointer_.empty() ? std::string("/") : pointer_) + ": " + what_;
  }

 private:
  std::nullopt_t Fail(std::string pointer, std::string what) {
    pointer_ = std::move(pointer);
    what_ = std::move(what);
    return std::nullopt;
  }

  const json* Member(const json& object, const char* key, const std::string& pointer) {
    if (!object.is_object()) {
      Fail(pointer, "expected an object");
      return nullptr;
    }
    auto found = object.find(key);
    if (found == object.end()) {
      Fail(pointer, std::string("missing \"") + key + "\"");
      return nullptr;
    }
    return &*found;
  }

  std::optional<std::string> StringMember(const json& object, const char* key,
                                          const std::string& pointer) {
    const json* value = Member(object, key, pointer);
    if (value == nullptr) return std::nullopt;
    if (!value->is_string()) return Fail(pointer + "/" + key, "expected a string");
    return value->get<std::string>();
  }

  std::optional<double> NumberFromJson(const json& value, const std::string& pointer) {
    if (value.is_number()) return value.get<double>();
    if (value.is_string()) {
      std::string text = value.get<std::string>();
      if (text == "NaN") return std::bit_cast<double>(kQuietNaN);
      if (text == "Infinity") return INFINITY;
      if (text == "-Infinity") return -INFINITY;
    }
    return Fail(pointer, "expected a number, \"NaN\", \"Infinity\" or \"-Infinity\"");
  }

  std::optional<SettingValue> ValueFromJson(const json& node, const std::string& pointer,
                                            bool insideArray) {
    std::optional<std::string> name = StringMember(node, "name", pointer);
    if (!name) return std::nullopt;
    const json* type = Member(node, "type", pointer);
    if (type == nullptr) return std::nullopt;
    if (insideArray && type->is_number_integer()) {
      int64_t typeByte = type->get<int64_t>();
      if (typeByte < 4 || typeByte > 255) {
        return Fail(pointer + "/type", "an element type number must be 4 to 255");
      }
      return SettingValue::OfUnknownType(*name, static_cast<uint32_t>(typeByte));
    }
    if (!type->is_string()) return Fail(pointer + "/type", "expected a type name");
    const std::string typeName = type->get<std::string>();
    if (typeName == "string") {
      std::optional<std::string> text = StringMember(node, "value", pointer);
      if (!text) return std::nullopt;
      return SettingValue::String(*name, std::move(*text));
    }
    if (typeName == "array" && insideArray) return Fail(pointer + "/type", "arrays do not nest");
    if (typeName != "number" && typeName != "boolean" && typeName != "array") {
      return Fail(pointer + "/type", "unknown type \"" + typeName + "\"");
    }
    const json* value = Member(node, "value", pointer);
    if (value == nullptr) return std::nullopt;
    const std::string valuePointer = pointer + "/value";
    if (typeName == "number") {
      std::optional<double> number = NumberFromJson(*value, valuePointer);
      if (!number) return std::nullopt;
      return SettingValue::Number(*name, *number);
    }
    if (typeName == "boolean") {
      if (!value->is_boolean()) return Fail(valuePointer, "expected true or false");
      return SettingValue::Boolean(*name, value->get<bool>());
    }
    if (!value->is_array()) return Fail(valuePointer, "expected a list of values");
    SettingArray elements;
    for (size_t i = 0; i < value->size(); ++i) {
      std::optional<SettingValue> element =
          ValueFromJson((*value)[i], valuePointer + "/" + std::to_string(i), true);
      if (!element) return std::nullopt;
      elements.Append(std::move(*element));
    }
    return SettingValue::Array(*name, std::move(elements));
  }

  std::string pointer_;
  std::string what_;
};

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
  ShapeReader reader;
  std::optional<DecodedSettings> settings = reader.Read(document);
  if (!settings) *error = reader.Message();
  return settings;
}
