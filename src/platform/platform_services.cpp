#include "platform/platform_services.h"

#include <string_view>

#include "admincfg/admin_config.h"
#include "admincfg/parse_bool.h"

namespace {

struct PathCaches {
  std::string assetCache;
  std::string vxCache;
  std::string playerDataRoot;
  std::string privateData;
  std::string adminConfigFile;
  std::string separator;
};

PathCaches& Caches() {
  static PathCaches caches;
  return caches;
}

template <typename Compute>
const std::string& Cached(std::string& cache, Compute compute) {
  if (!cache.empty()) return cache;
  std::string computed = compute();
  if (cache.empty()) cache = std::move(computed);
  return cache;
}

// The player builds each data path in a buffer of 260 UTF-16 units, the terminator included.
constexpr size_t kPathBufferUnits = 260;

// UTF-8 to UTF-16 units; nothing for bytes that are not UTF-8.
std::optional<std::u16string> Utf16Units(std::string_view utf8) {
  std::u16string units;
  for (size_t pos = 0; pos < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[pos]);
    const size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if ((lead >= 0x80 && lead < 0xC2) || lead > 0xF4 || pos + length > utf8.size()) {
      return std::nullopt;
    }
    char32_t code = length == 1 ? lead : lead & (0x7F >> length);
    for (size_t i = 1; i < length; ++i) {
      const auto next = static_cast<unsigned char>(utf8[pos + i]);
      if ((next & 0xC0) != 0x80) return std::nullopt;
      code = (code << 6) | (next & 0x3F);
    }
    const char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    if (code < least[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
      return std::nullopt;
    }
    if (code >= 0x10000) {
      units.push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)));
      units.push_back(static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF)));
    } else {
      units.push_back(static_cast<char16_t>(code));
    }
    pos += length;
  }
  return units;
}

// UTF-16 units to UTF-8; nothing when half of a surrogate pair is left alone.
std::optional<std::string> Utf8Text(std::u16string_view units) {
  std::string utf8;
  for (size_t pos = 0; pos < units.size(); ++pos) {
    char32_t code = units[pos];
    if (code >= 0xDC00 && code <= 0xDFFF) return std::nullopt;
    if (code >= 0xD800 && code <= 0xDBFF) {
      if (pos + 1 == units.size() || units[pos + 1] < 0xDC00 || units[pos + 1] > 0xDFFF) {
        return std::nullopt;
      }
      code = 0x10000 + ((code - 0xD800) << 10) + (units[++pos] - 0xDC00);
    }
    if (code < 0x80) {
      utf8.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
      utf8.push_back(static_cast<char>(0xC0 | (code >> 6)));
      utf8.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
      utf8.push_back(static_cast<char>(0xE0 | (code >> 12)));
      utf8.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
      utf8.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else {
      utf8.push_back(static_cast<char>(0xF0 | (code >> 18)));
      utf8.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
      utf8.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
      utf8.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
  }
  return utf8;
}

// base + suffix as the player's buffer holds them: whatever does not fit in 259 units is cut.
// Empty when the text cannot be converted (a cut through a surrogate pair, or a base that is
// not UTF-8), so that the path cache stays empty and the next call tries again.
std::string BoundedPath(std::string_view base, const char* backslashSuffix) {
  std::optional<std::u16string> units = Utf16Units(base);
  std::optional<std::u16string> suffix = Utf16Units(NativeRelativePath(backslashSuffix));
  if (!units || !suffix) return std::string();
  *units += *suffix;
  if (units->size() > kPathBufferUnits - 1) units->resize(kPathBufferUnits - 1);
  return Utf8Text(*units).value_or("");
}

constexpr const char* kShellFoldersKey =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

}  // namespace

bool IsUtf8Text(std::string_view text) {
  return Utf16Units(text).has_value();
}

std::string NativeRelativePath(const char* backslashPath) {
  std::string path(backslashPath);
  for (char& c : path) {
    if (c == '\\') c = kPathSeparator;
  }
  return path;
}

SMPlatformServices::SMPlatformServices(SMSystem& system) : system_(system) {
  SMAdminConfig adminConfig(AdminConfigFilePath(system));
  enableLocalAppData_ = ParseBool(adminConfig.GetValue("EnableLocalAppData").value_or(""));
}

void SMPlatformServices::ResetPathCachesForTesting() {
  Caches() = PathCaches{};
}

const std::string& SMPlatformServices::PathSeparator() {
  Caches().separator = std::string(1, kPathSeparator);
  return Caches().separator;
}

std::string SMPlatformServices::RoamingPath(const char* suffix) {
  // A failed folder query leaves the bare suffix, a path from the root of the current drive;
  // the player behaves the same way.
  std::string base = system_.ShellFolderPath(SMSystem::kRoamingAppData).value_or("");
  return BoundedPath(base, suffix);
}

const std::string& SMPlatformServices::AssetCacheFolder() {
  return Cached(Caches().assetCache,
                [&] { return RoamingPath("\\Brinmor\\Vantrel Player\\AssetCache"); });
}

const std::string& SMPlatformServices::VXCacheFolder() {
  return Cached(Caches().vxCache,
                [&] { return RoamingPath("\\Brinmor\\Vantrel Player\\VXCache"); });
}

const std::string& SMPlatformServices::PrivateDataFolder() {
  return Cached(Caches().privateData,
                [&] { return RoamingPath("\\Brinmor\\Vantrel Player\\KPSPrivateData2"); });
}

const std::string& SMPlatformServices::PlayerDataRoot() {
  return Cached(Caches().playerDataRoot, [&] { return ComputePlayerDataRoot(); });
}

std::string SMPlatformServices::ComputePlayerDataRoot() {
  int folder = enableLocalAppData_ ? SMSystem::kLocalAppData : SMSystem::kRoamingAppData;
  std::optional<std::string> base = system_.ShellFolderPath(folder | SMSystem::kCreateFlag);
  if (!base) {
    SMSystem::RegistryQuery query{SMSystem::RegistryRoot::CurrentUser, kShellFoldersKey,
                                  enableLocalAppData_ ? "Local AppData" : "AppData", 260, true};
    std::string fallback;
    if (std::optional<std::vector<uint8_t>> bytes = system_.QueryRegistryValue(query)) {
      fallback.assign(bytes->begin(), bytes->end());
      fallback = fallback.c_str();  // the value is read as a zero-terminated text
      if (!fallback.empty() && (fallback.back() == '/' || fallback.back() == '\\')) {
        fallback.pop_back();
      }
    }
    base = fallback;
  }
  return BoundedPath(*base, "\\Tessaline\\Vantrel Player");
}

const std::string& AdminConfigFilePath(SMSystem& system) {
  return Cached(Caches().adminConfigFile, [&] {
    std::string folder = system.SystemWow64Directory();
    if (folder.empty()) folder = system.SystemDirectory();
    if (folder.empty()) return std::string();
    return BoundedPath(folder, "\\Tessalin\\Vantrel\\tss.cfg");
  });
}
