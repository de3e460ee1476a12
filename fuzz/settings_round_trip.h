#pragma once

#include <cstdint>
#include <span>
#include <string>

// The reader's round-trip property: whatever Parse accepts, written and parsed again, gives the
// same object name and the same names, types and values. False, with the reason, when it does
// not hold; true for streams the reader rejects.
bool SettingsRoundTripHolds(std::span<const uint8_t> bytes, std::string* whyNot);
