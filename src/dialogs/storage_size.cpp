#include "dialogs/storage_size.h"

#include <cstdio>

#include "l10n/string_table.h"

namespace {

constexpr uint64_t kKilo = 1024;
constexpr uint64_t kMega = 1024 * 1024;
constexpr uint64_t kGiga = 1024 * 1024 * 1024;

const char* FormatOf(SMStringTable& strings, TextId id) {
  const char* format = strings.GetString(id);
  return format != nullptr ? format : "";
}

}  // namespace

std::string FormatStorageSize(SMStringTable& strings, uint64_t bytes) {
  char text[32] = {};
  if (bytes < kKilo) {
    std::snprintf(text, sizeof text, FormatOf(strings, TextId::kSizeBytes),
                  static_cast<unsigned long long>(bytes));
  } else if (bytes < kMega) {
    float kilobytes = static_cast<float>(bytes) * (1.0f / 1024.0f);
    std::snprintf(text, sizeof text, FormatOf(strings, TextId::kSizeKilobytes),
                  static_cast<unsigned long long>(kilobytes));
  } else if (bytes < kGiga) {
    float megabytes = static_cast<float>(bytes) * (1.0f / 1048576.0f);
    std::snprintf(text, sizeof text, FormatOf(strings, TextId::kSizeMegabytes),
                  static_cast<double>(megabytes));
  } else {
    float gigabytes = static_cast<float>(bytes) * (1.0f / 1073741824.0f);
    std::snprintf(text, sizeof text, FormatOf(strings, TextId::kSizeGigabytes),
                  static_cast<double>(gigabytes));
  }
  return text;
}
