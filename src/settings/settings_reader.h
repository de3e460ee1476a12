#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "settings/settings_table.h"

// The store's diagnostics, worded as the player words them, go to the standard error stream.
void LogSettingsMessage(const char* message);

// Reads one "settings.sol" stream, already in memory, the way the player reads it: big-endian
// values, a short read yields 0 and only logs, and the diagnostics on stderr are the player's.
class SMSettingsReader {
 public:
  explicit SMSettingsReader(std::span<const uint8_t> bytes);
  explicit SMSettingsReader(std::string_view bytes);

  uint8_t ReadU8();
  uint16_t ReadU16();
  uint32_t ReadU32();
  double ReadDouble();
  // A 16-bit count and that many bytes, cut at the first zero byte; empty when the bytes would
  // run past the end (the count stays consumed). Never nullopt: memory failure is not reported
  // as a value here.
  std::optional<std::string> ReadAndCopyPStringAsSimpleString();
  bool HasMore() const { return position_ < size_; }
  uint32_t position() const { return position_; }

  // The table of the stream and its object name, or nothing when the stream is not a readable
  // settings file.
  std::unique_ptr<SettingsTable> Parse(std::string* objectName);

 private:
  struct TagHeader {
    uint32_t type = 0;
    uint32_t length = 0;
  };

  TagHeader ReadTagHeader();
  bool CanRead(uint32_t count) const { return count <= size_ - position_; }
  void Skip(uint32_t count);
  std::optional<SettingValue> ReadScalar(std::string name, uint32_t type);
  // Nothing when the array does not end where it should, which spoils the whole file.
  std::optional<SettingValue> ReadArray(std::string name);

  const uint8_t* bytes_;
  uint32_t size_;
  uint32_t position_ = 0;
};
