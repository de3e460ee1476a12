#include "settings/settings_reader.h"

#include <cstdio>
#include <cstring>

namespace {

constexpr uint32_t kSettingsTagType = 2;
constexpr uint32_t kLongLengthMarker = 63;
constexpr uint32_t kMagic = 0x5443534F;  // "TCSO"

}  // namespace

void LogSettingsMessage(const char* message) {
  std::fputs(message, stderr);
}

SMSettingsReader::SMSettingsReader(std::span<const uint8_t> bytes)
    : bytes_(bytes.data()), size_(static_cast<uint32_t>(bytes.size())) {}

SMSettingsReader::SMSettingsReader(std::string_view bytes)
    : SMSettingsReader(
          std::span<const uint8_t>(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size())) {}

void SMSettingsReader::Skip(uint32_t count) {
  // Skipping past the end leaves nothing more to read, which is all the player's skip achieves.
  position_ = CanRead(count) ? position_ + count : size_;
}

uint8_t SMSettingsReader::ReadU8() {
  if (!CanRead(1)) {
    LogSettingsMessage("SMSettingsReader: ReadU8() attempted to read beyond end-of-stream.\n");
    return 0;
  }
  return bytes_[position_++];
}

uint16_t SMSettingsReader::ReadU16() {
  if (!CanRead(2)) {
    LogSettingsMessage("SMSettingsReader: ReadU16() attempted to read beyond end-of-stream.\n");
    return 0;
  }
  uint16_t value = static_cast<uint16_t>((bytes_[position_] << 8) | bytes_[position_ + 1]);
  position_ += 2;
  return value;
}

uint32_t SMSettingsReader::ReadU32() {
  if (!CanRead(4)) {
    LogSettingsMessage("SMSettingsReader: ReadU32() attempted to read beyond end-of-stream.\n");
    return 0;
  }
  uint32_t value = 0;
  for (int i = 0; i < 4; ++i) value = (value << 8) | bytes_[position_++];
  return value;
}

double SMSettingsReader::ReadDouble() {
  if (!CanRead(8)) {
    LogSettingsMessage("SMSettingsReader: ReadDouble() attempted to read beyond end-of-stream.\n");
    return 0.0;
  }
  uint64_t bits = 0;
  for (int i = 0; i < 8; ++i) bits = (bits << 8) | bytes_[position_++];
  double value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

std::optional<std::string> SMSettingsReader::ReadAndCopyPStringAsSimpleString() {
  uint16_t count = ReadU16();
  if (!CanRead(count)) {
    LogSettingsMessage(
        "SMSettingsReader: ReadAndCopyPStringAsSimpleString() attempted to read beyond "
        "end-of-stream.\n");
    return std::string();
  }
  const char* text = reinterpret_cast<const char*>(bytes_ + position_);
  position_ += count;
  // The player copies the text as a zero-terminated string: a zero byte ends it.
  return std::string(text, strnlen(text, count));
}

SMSettingsReader::TagHeader SMSettingsReader::ReadTagHeader() {
  uint16_t header = ReadU16();
  TagHeader tag{static_cast<uint32_t>(header >> 6), static_cast<uint32_t>(header & 63)};
  if (tag.length == kLongLengthMarker) tag.length = ReadU32();
  return tag;
}

std::optional<SettingValue> SMSettingsReader::ReadScalar(std::string name, uint32_t type) {
  switch (type) {
    case kSettingNumber:
      return SettingValue::Number(std::move(name), ReadDouble());
    case kSettingBoolean:
      return SettingValue::Boolean(std::move(name), ReadU8() != 0);
    case kSettingString: {
      std::optional<std::string> text = ReadAndCopyPStringAsSimpleString();
      if (!text) return std::nullopt;
      return SettingValue::String(std::move(name), std::move(*text));
    }
    default:
      return std::nullopt;
  }
}

std::optional<SettingValue> SMSettingsReader::ReadArray(std::string name) {
  SettingArray elements;
  // The player keeps an unknown-type element when the previous known element of the same array
  // was a number or a boolean, and drops it after a string. Files written since then carry such
  // elements, so the asymmetry stays.
  bool keepUnknownElement = false;
  for (;;) {
    std::optional<std::string> elementName = ReadAndCopyPStringAsSimpleString();
    if (!elementName || elementName->empty()) break;
    uint32_t type = ReadU8();
    if (type <= kSettingString) {
      std::optional<SettingValue> element = ReadScalar(std::move(*elementName), type);
      if (!element) break;
      elements.Append(std::move(*element));
      keepUnknownElement = type != kSettingString;
    } else if (type == kSettingArray) {
      LogSettingsMessage(
          "SMSettingsReader: Nested arrays are not supported. They are currently not a "
          "use-case; IGNORING VALUE.\n");
    } else {
      LogSettingsMessage(
          "SMSettingsReader: Unexpected data-type encountered when parsing array; IGNORING "
          "VALUE.\n");
      if (keepUnknownElement) {
        elements.Append(SettingValue::OfUnknownType(std::move(*elementName), type));
      }
    }
    // An ignored element's payload is not skipped: the next bytes are read as the next element.
  }
  if (ReadU8() != kSettingArrayEnd) return std::nullopt;
  return SettingValue::Array(std::move(name), std::move(elements));
}

std::unique_ptr<SettingsTable> SMSettingsReader::Parse(std::string* objectName) {
  position_ = 0;
  TagHeader tag = ReadTagHeader();
  if (tag.type != kSettingsTagType || tag.length > size_ - position_) return nullptr;
  if (ReadU32() != kMagic) return nullptr;
  uint16_t version = ReadU16();
  if (version < 2 || version > 4) return nullptr;
  if (version == 4) Skip(4);
  std::optional<std::string> name = ReadAndCopyPStringAsSimpleString();
  if (!name) return nullptr;
  if (objectName != nullptr) *objectName = std::move(*name);
  Skip(4);

  auto table = std::make_unique<SettingsTable>();
  while (HasMore()) {
    std::optional<std::string> pairName = ReadAndCopyPStringAsSimpleString();
    if (!pairName) return nullptr;
    uint32_t type = ReadU8();
    std::optional<SettingValue> value;
    if (type <= kSettingString) {
      value = ReadScalar(std::move(*pairName), type);
    } else if (type == kSettingArray) {
      value = ReadArray(std::move(*pairName));
      if (!value) return nullptr;
    } else {
      LogSettingsMessage(
          "SMSettingsReader: Unexpected data-type encountered when parsing settings; IGNORING "
          "VALUE.\n");
    }
    if (value) table->Insert(std::move(*value));
    // A missing end byte at the very end is only logged; any other end byte spoils the file.
    bool endByteThere = CanRead(1);
    uint8_t endByte = ReadU8();
    if (endByteThere && endByte != 0) return nullptr;
  }
  return table;
}
