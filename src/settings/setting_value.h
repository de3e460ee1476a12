#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The type byte of a value in a settings file.
enum SettingType : uint32_t {
  kSettingNumber = 0,
  kSettingBoolean = 1,
  kSettingString = 2,
  kSettingArray = 3,
};

// The byte that ends an array's elements in a settings file.
inline constexpr uint8_t kSettingArrayEnd = 9;

class SettingArray;

// One named, typed setting: a number (double), a boolean, a string or an array of such values.
// Copies are deep. An array element of a type the player does not know keeps its type byte and
// no payload (see the reader).
class SettingValue {
 public:
  SettingValue();
  ~SettingValue();
  SettingValue(const SettingValue& other);
  SettingValue(SettingValue&& other) noexcept;
  SettingValue& operator=(const SettingValue& other);
  SettingValue& operator=(SettingValue&& other) noexcept;

  static SettingValue Number(std::string name, double number);
  static SettingValue Boolean(std::string name, bool flag);
  static SettingValue String(std::string name, std::string text);
  static SettingValue Array(std::string name, SettingArray elements);
  static SettingValue OfUnknownType(std::string name, uint32_t typeByte);

  const std::string& name() const { return name_; }
  void set_name(std::string name) { name_ = std::move(name); }
  uint32_t type() const { return type_; }
  double number() const { return number_; }
  bool boolean() const { return flag_; }
  const std::string& text() const { return text_; }
  // Only for values of type kSettingArray.
  const SettingArray& array() const { return *array_; }
  SettingArray& array() { return *array_; }

 private:
  std::string name_;
  uint32_t type_ = kSettingNumber;
  double number_ = 0.0;
  bool flag_ = false;
  std::string text_;
  std::unique_ptr<SettingArray> array_;
};

// The elements of an array value, in file order, each with its own name.
class SettingArray {
 public:
  void Append(SettingValue element) { elements_.push_back(std::move(element)); }
  size_t size() const { return elements_.size(); }
  bool empty() const { return elements_.empty(); }
  const SettingValue& operator[](size_t index) const { return elements_[index]; }
  SettingValue& operator[](size_t index) { return elements_[index]; }
  void RemoveAt(size_t index) { elements_.erase(elements_.begin() + static_cast<long>(index)); }
  // Removes every element the predicate picks, in one pass that keeps the others' order.
  template <typename Predicate>
  void RemoveIf(Predicate remove) {
    std::erase_if(elements_, remove);
  }
  auto begin() const { return elements_.begin(); }
  auto end() const { return elements_.end(); }

 private:
  std::vector<SettingValue> elements_;
};

// True when both values have the same name, type and payload (numbers compared bit for bit,
// arrays element by element).
bool IdenticalValues(const SettingValue& a, const SettingValue& b);

// The payload of a value that is present with the type T (double, bool or std::string);
// nothing when the value is missing or of another type.
template <typename T>
std::optional<T> ValueAs(const SettingValue* value);
template <>
std::optional<double> ValueAs<double>(const SettingValue* value);
template <>
std::optional<bool> ValueAs<bool>(const SettingValue* value);
template <>
std::optional<std::string> ValueAs<std::string>(const SettingValue* value);
// The elements of a value that is present as an array, or nullptr.
const SettingArray* ArrayOf(const SettingValue* value);
