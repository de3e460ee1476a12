#include "settings/settings_writer.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>

#include "platform/file_io.h"

namespace {

constexpr uint32_t kInitialCapacity = 1024;
constexpr uint32_t kPStringCap = 65535;
constexpr uint32_t kShortLengthLimit = 63;

void WritePayload(SettingsOutputBuffer& body, const SettingValue& value);

void WriteArrayPayload(SettingsOutputBuffer& body, const SettingArray& elements) {
  for (const SettingValue& element : elements) {
    body.AppendPString(element.name());
    body.AppendU8(static_cast<uint8_t>(element.type()));
    // Arrays do not nest; an element of any other type is written as its name and type byte.
    if (element.type() <= kSettingString) WritePayload(body, element);
  }
  body.AppendU16(0);
  body.AppendU8(kSettingArrayEnd);
}

void WritePayload(SettingsOutputBuffer& body, const SettingValue& value) {
  switch (value.type()) {
    case kSettingNumber:
      body.AppendDouble(value.number());
      break;
    case kSettingBoolean:
      body.AppendU8(value.boolean() ? 1 : 0);
      break;
    case kSettingString:
      body.AppendPString(value.text());
      break;
    case kSettingArray:
      WriteArrayPayload(body, value.array());
      break;
    default:
      break;
  }
}

}  // namespace

SettingsOutputBuffer::SettingsOutputBuffer()
    : bytes_(new (std::nothrow) uint8_t[kInitialCapacity]),
      capacity_(bytes_ ? kInitialCapacity : 0) {}

void SettingsOutputBuffer::Append(const void* data, uint32_t count) {
  uint64_t needed = static_cast<uint64_t>(length_) + count;
  uint64_t newCapacity = capacity_;
  while (newCapacity != 0 && needed >= newCapacity) newCapacity *= 2;
  if (newCapacity == 0 || newCapacity > UINT32_MAX) return;
  if (newCapacity != capacity_) {
    std::unique_ptr<uint8_t[]> grown(new (std::nothrow) uint8_t[newCapacity]);
    if (!grown) return;
    std::memcpy(grown.get(), bytes_.get(), length_);
    bytes_ = std::move(grown);
    capacity_ = static_cast<uint32_t>(newCapacity);
  }
  if (count != 0) std::memcpy(bytes_.get() + length_, data, count);
  length_ += count;
}

void SettingsOutputBuffer::AppendU16(uint16_t value) {
  uint8_t bytes[2] = {static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value)};
  Append(bytes, 2);
}

void SettingsOutputBuffer::AppendU32(uint32_t value) {
  uint8_t bytes[4] = {static_cast<uint8_t>(value >> 24), static_cast<uint8_t>(value >> 16),
                      static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value)};
  Append(bytes, 4);
}

void SettingsOutputBuffer::AppendDouble(double value) {
  uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  uint8_t bytes[8];
  for (int i = 7; i >= 0; --i, bits >>= 8) bytes[i] = static_cast<uint8_t>(bits);
  Append(bytes, 8);
}

void SettingsOutputBuffer::AppendPString(std::string_view text) {
  uint32_t length = static_cast<uint32_t>(std::min<size_t>(text.size(), kPStringCap));
  AppendU16(static_cast<uint16_t>(length));
  Append(text.data(), length);
}

void WriteBodyHeader(SettingsOutputBuffer& body, std::string_view objectName) {
  body.Append("TCSO", 4);
  body.AppendU16(4);
  body.AppendU32(0);
  body.AppendPString(objectName);
  body.AppendU32(0);
}

void WritePairs(SettingsOutputBuffer& body, const SettingsTable& table) {
  for (const std::string& name : table.Names()) {
    const SettingValue* value = table.Find(name);
    if (value == nullptr) continue;
    body.AppendPString(name);
    body.AppendU8(static_cast<uint8_t>(value->type()));
    WritePayload(body, *value);
    body.AppendU8(0);
  }
}

std::string FinishStream(const SettingsOutputBuffer& body) {
  uint32_t length = body.length();
  std::string stream;
  if (length < kShortLengthLimit) {
    stream = {'\0', static_cast<char>(0x80 + length)};
  } else {
    stream = {'\0',
              static_cast<char>(0xBF),
              static_cast<char>(length >> 24),
              static_cast<char>(length >> 16),
              static_cast<char>(length >> 8),
              static_cast<char>(length)};
  }
  stream.append(body.view());
  return stream;
}

std::string SerializeSettings(const SettingsTable& table, std::string_view objectName) {
  SettingsOutputBuffer body;
  WriteBodyHeader(body, objectName);
  WritePairs(body, table);
  return FinishStream(body);
}

bool WriteSettingsStream(SMPlatformServices& platform, const std::string& folder,
                         const std::string& filePath, std::string_view stream) {
  platform.CreateFolder(folder, ".");
  if (!platform.DeleteBeforeRewrite(filePath)) return false;
  std::FILE* file = OpenFileUtf8(filePath, "wb");
  if (file == nullptr) return false;
  size_t written = std::fwrite(stream.data(), 1, stream.size(), file);
  bool closed = std::fclose(file) == 0;
  return written == stream.size() && closed;
}
