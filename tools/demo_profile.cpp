// Fills the current user's player profile with a few known sites and some stored data, so that
// the program shown by tools/run.sh has something to show. Run only inside a private Wine
// prefix.
#include <cstdio>
#include <string>

#include "platform/file_io.h"
#include "platform/win32/win32_platform.h"
#include "platform/win32/win32_system.h"
#include "settings/setting_keys.h"
#include "settings/settings_manager.h"

namespace {

struct DemoSite {
  const char* name;
  double klimit;
  bool cameraAlways;
  bool cameraAllow;
  size_t storedBytes;
};

constexpr DemoSite kSites[] = {
    {"www.example.com", 100, true, true, 48 * 1024},
    {"games.example.org", 0, false, false, 3 * 1024 * 1024 + 512},
    {"video.example.net", -1, true, false, 700},
};

bool WriteFileOfSize(const std::string& path, size_t bytes) {
  std::FILE* file = OpenFileUtf8(path, "wb");
  if (file == nullptr) return false;
  std::string block(bytes, 'x');
  bool written = std::fwrite(block.data(), 1, block.size(), file) == block.size();
  return std::fclose(file) == 0 && written;
}

}  // namespace

int main() {
  Win32System system;
  Win32PlatformServices platform(system);
  const std::string& separator = platform.PathSeparator();
  std::string shared = platform.PlayerDataRoot() + separator + "#SharedObjects";
  // The player names its stored-data folder at random once; the demo uses a fixed name.
  platform.CreateFolder(shared, "DEMO2K7Q");

  SMSettingsManager settings(platform);
  int failures = 0;
  for (const DemoSite& site : kSites) {
    const std::string name = site.name;
    if (!settings.AddSite(name)) ++failures;
    if (!settings.SetValue(name, SettingValue::Number(kStorageLimit.name, site.klimit))) ++failures;
    if (!settings.SetValue(name, SettingValue::Boolean(kCameraAlways.name, site.cameraAlways))) {
      ++failures;
    }
    if (!settings.SetValue(name, SettingValue::Boolean(kCameraAllow.name, site.cameraAllow))) {
      ++failures;
    }
    platform.CreateFolder(settings.storedDataFolder(), name);
    std::string folder = settings.storedDataFolder() + separator + name;
    if (!WriteFileOfSize(folder + separator + "progress.sol", site.storedBytes)) ++failures;
  }
  std::printf("demo profile: %zu sites in %s\n", std::size(kSites),
              settings.settingsFolder().c_str());
  return failures == 0 ? 0 : 1;
}
