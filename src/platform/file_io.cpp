#include "platform/file_io.h"

#include <cerrno>
#include <cstring>

#ifdef _WIN32
#include <windows.h>

#include "platform/win32/utf16.h"
#endif

std::FILE* OpenFileUtf8(const std::string& path, const char* mode) {
#ifdef _WIN32
  std::optional<std::wstring> widePath = ToUtf16(path);
  std::optional<std::wstring> wideMode = ToUtf16(mode);
  if (!widePath || !wideMode) return nullptr;
  return _wfopen(widePath->c_str(), wideMode->c_str());
#else
  return std::fopen(path.c_str(), mode);
#endif
}

std::optional<std::string> ReadWholeFile(const std::string& path) {
  std::FILE* file = OpenFileUtf8(path, "rb");
  if (file == nullptr) return std::nullopt;
  std::string contents;
  char block[65536];
  size_t got;
  while ((got = std::fread(block, 1, sizeof block, file)) > 0) contents.append(block, got);
  bool failed = std::ferror(file) != 0;
  std::fclose(file);
  if (failed) return std::nullopt;
  return contents;
}

std::string LastSystemError() {
#ifdef _WIN32
  if (DWORD code = GetLastError(); code != 0) {
    wchar_t text[512] = {};
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                  nullptr, code, 0, text, 512, nullptr);
    while (length > 0 && (text[length - 1] == L'\r' || text[length - 1] == L'\n' ||
                          text[length - 1] == L' ' || text[length - 1] == L'.')) {
      --length;
    }
    std::string reason = ToUtf8(std::wstring_view(text, length)).value_or("");
    return (reason.empty() ? "system error" : reason) + " (error " + std::to_string(code) + ")";
  }
#endif
  return errno != 0 ? std::strerror(errno) : "";
}

void ClearSystemError() {
#ifdef _WIN32
  SetLastError(0);
#endif
  errno = 0;
}
