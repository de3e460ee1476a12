#include "platform/platform_services.h"

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

constexpr const char* kShellFoldersKey =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

}  // namespace

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
  return base + NativeRelativePath(suffix);
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
  return *base + NativeRelativePath("\\Tessaline\\Vantrel Player");
}

const std::string& AdminConfigFilePath(SMSystem& system) {
  return Cached(Caches().adminConfigFile, [&] {
    std::string folder = system.SystemWow64Directory();
    if (folder.empty()) folder = system.SystemDirectory();
    if (folder.empty()) return std::string();
    return folder + NativeRelativePath("\\Tessalin\\Vantrel\\tss.cfg");
  });
}
