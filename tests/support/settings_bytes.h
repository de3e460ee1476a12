#pragma once

// Builds settings streams byte by byte for the tests, independently of the writer.

#include <cstdint>
#include <cstring>
#include <string>

namespace settings_bytes {

inline std::string U16(uint16_t value) {
  return {static_cast<char>(value >> 8), static_cast<char>(value & 0xFF)};
}

inline std::string U32(uint32_t value) {
  return U16(value >> 16) + U16(value & 0xFFFF);
}

inline std::string Double(double value) {
  uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return U32(static_cast<uint32_t>(bits >> 32)) + U32(static_cast<uint32_t>(bits));
}

inline std::string PString(const std::string& text) {
  return U16(static_cast<uint16_t>(text.size())) + text;
}

inline std::string Byte(uint8_t value) {
  return std::string(1, static_cast<char>(value));
}

// Body with version 4 and its reserved bytes, the object name and the reserved bytes after it.
inline std::string Body(const std::string& objectName, const std::string& pairs) {
  return "TCSO" + U16(4) + U32(0) + PString(objectName) + U32(0) + pairs;
}

// The tag header of a settings stream (short below 63 bytes of body) and the body.
inline std::string Stream(const std::string& body) {
  if (body.size() < 63) return Byte(0) + Byte(static_cast<uint8_t>(0x80 + body.size())) + body;
  return Byte(0) + Byte(0xBF) + U32(static_cast<uint32_t>(body.size())) + body;
}

inline std::string NumberPair(const std::string& name, double value) {
  return PString(name) + Byte(0) + Double(value) + Byte(0);
}

inline std::string BooleanPair(const std::string& name, bool flag) {
  return PString(name) + Byte(1) + Byte(flag ? 1 : 0) + Byte(0);
}

inline std::string StringPair(const std::string& name, const std::string& text) {
  return PString(name) + Byte(2) + PString(text) + Byte(0);
}

// An array pair from its already encoded elements.
inline std::string ArrayPair(const std::string& name, const std::string& elements) {
  return PString(name) + Byte(3) + elements + U16(0) + Byte(9) + Byte(0);
}

inline std::string Element(const std::string& name, uint8_t type, const std::string& payload) {
  return PString(name) + Byte(type) + payload;
}

}  // namespace settings_bytes
