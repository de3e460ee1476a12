#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/platform_services.h"
#include "settings/settings_table.h"

// A growable byte buffer for one settings stream. It starts at 1024 bytes and doubles while the
// bytes to append would not leave one spare byte; when a doubling cannot be allocated the append
// is dropped, which the finished stream then shows as a short file.
class SettingsOutputBuffer {
 public:
  SettingsOutputBuffer();

  void Append(const void* data, uint32_t count);
  void AppendU8(uint8_t value) { Append(&value, 1); }
  void AppendU16(uint16_t value);
  void AppendU32(uint32_t value);
  void AppendDouble(double value);
  // A 16-bit length (capped at 65535) and that many bytes of the text.
  void AppendPString(std::string_view text);

  const uint8_t* data() const { return bytes_.get(); }
  uint32_t length() const { return length_; }
  uint32_t capacity() const { return capacity_; }
  std::string_view view() const { return {reinterpret_cast<const char*>(bytes_.get()), length_}; }

 private:
  std::unique_ptr<uint8_t[]> bytes_;
  uint32_t capacity_ = 0;
  uint32_t length_ = 0;
};

// The steps of writing a stream: the body starts with the magic, version and object name, then
// every pair in the table's order; FinishStream puts the tag header in front.
void WriteBodyHeader(SettingsOutputBuffer& body, std::string_view objectName);
void WritePairs(SettingsOutputBuffer& body, const SettingsTable& table);
std::string FinishStream(const SettingsOutputBuffer& body);

// The complete bytes of a settings file holding the table.
std::string SerializeSettings(const SettingsTable& table, std::string_view objectName);

// Replaces a settings file on disk: makes sure its folder exists (at most one missing level is
// created), deletes the old file, then writes the new bytes in one write. True only when every
// byte was written and the file closed cleanly.
bool WriteSettingsStream(SMPlatformServices& platform, const std::string& folder,
                         const std::string& filePath, std::string_view stream);
