#include "platform/system.h"

std::optional<uint32_t> QueryRegistryNumber(SMSystem& system, SMSystem::RegistryRoot root,
                                            const std::string& subKey,
                                            const std::string& valueName) {
  std::optional<std::vector<uint8_t>> bytes =
      system.QueryRegistryValue({root, subKey, valueName, 4});
  if (!bytes) return std::nullopt;
  uint32_t number = 0;
  for (size_t i = 0; i < bytes->size() && i < 4; ++i) {
    number |= static_cast<uint32_t>((*bytes)[i]) << (8 * i);
  }
  return number;
}

std::string SMSystem::FoldCase(const std::string& text) {
  std::string folded = text;
  for (char& c : folded) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return folded;
}
