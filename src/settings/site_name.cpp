#include "settings/site_name.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace {

std::string AsciiLower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower;
}

bool IsForbiddenInFolderName(char c) {
  return static_cast<unsigned char>(c) < 0x20 ||
         std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos;
}

bool HasForbiddenCharacter(const std::string& name) {
  return std::any_of(name.begin(), name.end(), [](char c) {
    return IsForbiddenInFolderName(c) || static_cast<unsigned char>(c) == 0x7F;
  });
}

bool EndsInDotOrBlank(const std::string& name) {
  return !name.empty() && (name.back() == '.' || name.back() == ' ');
}

// "CON", "nul.txt", "COM1 .x" and the like open a device on Windows, whatever the folder.
bool IsDeviceName(const std::string& name) {
  std::string base = AsciiLower(name.substr(0, name.find('.')));
  while (!base.empty() && base.back() == ' ') base.pop_back();
  for (const char* device : {"con", "prn", "aux", "nul", "conin$", "conout$"}) {
    if (base == device) return true;
  }
  return base.size() == 4 && (base.rfind("com", 0) == 0 || base.rfind("lpt", 0) == 0) &&
         std::isdigit(static_cast<unsigned char>(base[3]));
}

// "EXAMPL~1.COM" can be the short name of another folder.
bool MayBeShortName(const std::string& name) {
  for (size_t tilde = name.find('~'); tilde != std::string::npos;
       tilde = name.find('~', tilde + 1)) {
    if (tilde + 1 < name.size() && std::isdigit(static_cast<unsigned char>(name[tilde + 1]))) {
      return true;
    }
  }
  return false;
}

}  // namespace

bool HasOwnSettingsFolder(const std::string& siteName) {
  return std::none_of(siteName.begin(), siteName.end(), IsForbiddenInFolderName) &&
         !EndsInDotOrBlank(siteName) && !MayBeShortName(siteName);
}

bool MayDeleteSiteFolder(const std::string& siteName) {
  if (siteName.empty() || siteName == "." || siteName == "..") return false;
  if (EndsInDotOrBlank(siteName)) return false;
  if (HasForbiddenCharacter(siteName) || IsDeviceName(siteName) || MayBeShortName(siteName)) {
    return false;
  }
  // The app-container folder lies inside the stored-data folder beside the sites' folders.
  return AsciiLower(siteName) != "#appcontainer";
}
