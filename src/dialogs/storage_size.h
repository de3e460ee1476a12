#pragma once

#include <cstdint>
#include <string>

class SMStringTable;

// The "Storage Used" text of a site: bytes below 1 KiB, then kB, MB and GB. The sizes go
// through single-precision arithmetic on purpose: the player shows the same last digit.
std::string FormatStorageSize(SMStringTable& strings, uint64_t bytes);
