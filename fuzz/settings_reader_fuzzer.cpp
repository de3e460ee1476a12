// libFuzzer target for the settings reader, with the round-trip property as its oracle.

#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

#include "settings_round_trip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string whyNot;
  if (!SettingsRoundTripHolds(std::span<const uint8_t>(data, size), &whyNot)) {
    std::fprintf(stderr, "settings round trip broken: %s\n", whyNot.c_str());
    std::abort();
  }
  return 0;
}
