#pragma once

#include <string_view>

// The player's reading of a boolean text: "true", "t", "yes" or "y" in any ASCII capitals,
// or a leading decimal number (strtol rules) that is not zero.
bool ParseBool(std::string_view text);
