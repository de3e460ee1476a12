// libFuzzer target with the read-back property of input_properties.h as its oracle.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "input_properties.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string whyNot;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  if (!SettingsJsonReadBackHolds(input, &whyNot)) {
    std::fprintf(stderr, "read-back property broken: %s\n", whyNot.c_str());
    std::abort();
  }
  return 0;
}
