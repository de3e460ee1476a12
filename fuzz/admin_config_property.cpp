#include <cstdio>
#include <set>

#include "admincfg/admin_config.h"
#include "input_properties.h"

namespace {

bool IsTrimmedEnd(char c) {
  return static_cast<signed char>(c) <= 32;
}

bool IsCleanText(const std::string& text) {
  return !text.empty() && !IsTrimmedEnd(text.front()) && !IsTrimmedEnd(text.back()) &&
         text.find_first_of("\r\n") == std::string::npos;
}

// The bytes Write produces for the entries.
std::string WrittenBytes(const SMAdminConfig& config) {
  std::FILE* file = std::tmpfile();
  if (file == nullptr) return std::string();
  config.Write(file);
  std::string bytes;
  std::rewind(file);
  char block[4096];
  for (size_t got; (got = std::fread(block, 1, sizeof block, file)) > 0;) bytes.append(block, got);
  std::fclose(file);
  return bytes;
}

}  // namespace

bool AdminConfigReadBackHolds(std::string_view bytes, std::string* whyNot) {
  SMAdminConfig config("");
  config.LoadFromBytes(bytes);
  std::set<std::string> keys;
  bool hasZeroByte = false;
  for (const auto& [key, value] : config.entries()) {
    if (!IsCleanText(key) || !IsCleanText(value) || key.find('=') != std::string::npos) {
      *whyNot = "entry not trimmed or split wrongly: " + key + "=" + value;
      return false;
    }
    if (!keys.insert(key).second) {
      *whyNot = "key listed twice: " + key;
      return false;
    }
    hasZeroByte =
        hasZeroByte || key.find('\0') != std::string::npos || value.find('\0') != std::string::npos;
  }
  if (hasZeroByte) return true;
  SMAdminConfig reread("");
  reread.LoadFromBytes(WrittenBytes(config));
  if (reread.entries() != config.entries()) {
    *whyNot = "the written file reads back differently";
    return false;
  }
  return true;
}
