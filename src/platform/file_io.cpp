#include "platform/file_io.h"

#ifdef _WIN32
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
