#include "admincfg/parse_bool.h"

#include <cstdlib>
#include <string>

bool ParseBool(std::string_view text) {
  std::string lowered(text);
  for (char& c : lowered) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  if (lowered == "true" || lowered == "t" || lowered == "yes" || lowered == "y") return true;
  // strtol stops at an embedded zero byte, as the player's reading of the text does.
  return std::strtol(lowered.c_str(), nullptr, 10) != 0;
}
