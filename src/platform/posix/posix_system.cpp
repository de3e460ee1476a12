#include "platform/posix/posix_system.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

struct LocaleLanguage {
  const char* prefix;
  uint16_t languageId;
};

// Longer prefixes first, so that "pt_BR" wins over "pt".
constexpr LocaleLanguage kLocaleLanguages[] = {
    {"en_GB", 0x0809},       {"pt_BR", 0x0416}, {"zh_TW", 0x0404}, {"zh_HK", 0x0C04},
    {"sr_RS@latin", 0x241A}, {"ar", 0x0401},    {"bg", 0x0402},    {"zh", 0x0804},
    {"cs", 0x0405},          {"da", 0x0406},    {"de", 0x0407},    {"el", 0x0408},
    {"en", 0x0409},          {"es", 0x0C0A},    {"fi", 0x040B},    {"fr", 0x040C},
    {"he", 0x040D},          {"hu", 0x040E},    {"it", 0x0410},    {"ja", 0x0411},
    {"ko", 0x0412},          {"nl", 0x0413},    {"nb", 0x0414},    {"no", 0x0414},
    {"pl", 0x0415},          {"pt", 0x0816},    {"ro", 0x0418},    {"ru", 0x0419},
    {"hr", 0x041A},          {"sk", 0x041B},    {"sv", 0x041D},    {"th", 0x041E},
    {"tr", 0x041F},          {"uk", 0x0422},    {"sl", 0x0424},    {"et", 0x0425},
    {"lv", 0x0426},          {"lt", 0x0427},
};

}  // namespace

uint16_t LanguageIdForLocale(const std::string& locale) {
  for (const LocaleLanguage& entry : kLocaleLanguages) {
    std::string prefix = entry.prefix;
    if (locale.rfind(prefix, 0) != 0) continue;
    if (prefix.find('@') != std::string::npos) return entry.languageId;
    // "sr_RS@latin" must not be read as "sr"; otherwise the prefix must end a language part.
    char next = locale.size() > prefix.size() ? locale[prefix.size()] : '\0';
    if (next == '\0' || next == '_' || next == '.' || next == '@') return entry.languageId;
  }
  return 0x0409;
}

bool PosixSystem::IsUserAdmin() {
  return geteuid() == 0;
}

uint16_t PosixSystem::UserDefaultUILanguage() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return LanguageIdForLocale(value);
  }
  return 0x0409;
}

std::string PosixSystem::CommandLine() {
  std::ifstream file("/proc/self/cmdline", std::ios::binary);
  std::string raw((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  while (!raw.empty() && raw.back() == '\0') raw.pop_back();
  for (char& c : raw) {
    if (c == '\0') c = ' ';
  }
  return raw;
}

std::string PosixSystem::ModulePath() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

void PosixSystem::ExitProcess(int status) {
  std::_Exit(status);
}

std::optional<std::string> PosixSystem::ShellFolderPath(int csidl) {
  bool create = (csidl & kCreateFlag) != 0;
  int folder = csidl & ~kCreateFlag;
  const std::string& path =
      folder == kLocalAppData ? folders_.localAppData : folders_.roamingAppData;
  if (path.empty() || (folder != kLocalAppData && folder != kRoamingAppData)) {
    return std::nullopt;
  }
  std::error_code error;
  if (create) std::filesystem::create_directories(path, error);
  if (!std::filesystem::is_directory(path, error)) return std::nullopt;
  return path;
}
