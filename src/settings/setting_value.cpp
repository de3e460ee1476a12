#include "settings/setting_value.h"

#include <cstring>

SettingValue::SettingValue() = default;
SettingValue::~SettingValue() = default;
SettingValue::SettingValue(SettingValue&& other) noexcept = default;
SettingValue& SettingValue::operator=(SettingValue&& other) noexcept = default;

SettingValue::SettingValue(const SettingValue& other)
    : name_(other.name_),
      type_(other.type_),
      number_(other.number_),
      flag_(other.flag_),
      text_(other.text_),
      array_(other.array_ ? std::make_unique<SettingArray>(*other.array_) : nullptr) {}

SettingValue& SettingValue::operator=(const SettingValue& other) {
  if (this != &other) {
    SettingValue copy(other);
    *this = std::move(copy);
  }
  return *this;
}

// Each factory starts from the bare name and type byte and sets what the type holds.
SettingValue SettingValue::Number(std::string name, double number) {
  SettingValue value = OfUnknownType(std::move(name), kSettingNumber);
  value.number_ = number;
  return value;
}

SettingValue SettingValue::Boolean(std::string name, bool flag) {
  SettingValue value = OfUnknownType(std::move(name), kSettingBoolean);
  value.flag_ = flag;
  return value;
}

SettingValue SettingValue::String(std::string name, std::string text) {
  SettingValue value = OfUnknownType(std::move(name), kSettingString);
  value.text_ = std::move(text);
  return value;
}

SettingValue SettingValue::Array(std::string name, SettingArray elements) {
  SettingValue value = OfUnknownType(std::move(name), kSettingArray);
  value.array_ = std::make_unique<SettingArray>(std::move(elements));
  return value;
}

SettingValue SettingValue::OfUnknownType(std::string name, uint32_t typeByte) {
  SettingValue value;
  value.name_ = std::move(name);
  value.type_ = typeByte;
  return value;
}

bool IdenticalValues(const SettingValue& a, const SettingValue& b) {
  if (a.name() != b.name() || a.type() != b.type()) return false;
  switch (a.type()) {
    case kSettingNumber: {
      double aNumber = a.number();
      double bNumber = b.number();
      return std::memcmp(&aNumber, &bNumber, sizeof aNumber) == 0;
    }
    case kSettingBoolean:
      return a.boolean() == b.boolean();
    case kSettingString:
      return a.text() == b.text();
    case kSettingArray:
      if (a.array().size() != b.array().size()) return false;
      for (size_t i = 0; i < a.array().size(); ++i) {
        if (!IdenticalValues(a.array()[i], b.array()[i])) return false;
      }
      return true;
    default:
      return true;  // an unknown type has no payload
  }
}

template <>
std::optional<double> ValueAs<double>(const SettingValue* value) {
  if (value == nullptr || value->type() != kSettingNumber) return std::nullopt;
  return value->number();
}

template <>
std::optional<bool> ValueAs<bool>(const SettingValue* value) {
  if (value == nullptr || value->type() != kSettingBoolean) return std::nullopt;
  return value->boolean();
}

template <>
std::optional<std::string> ValueAs<std::string>(const SettingValue* value) {
  if (value == nullptr || value->type() != kSettingString) return std::nullopt;
  return value->text();
}

const SettingArray* ArrayOf(const SettingValue* value) {
  return value != nullptr && value->type() == kSettingArray ? &value->array() : nullptr;
}
