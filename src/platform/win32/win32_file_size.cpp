#include <windows.h>

#include "platform/win32/utf16.h"
#include "platform/win32/win32_platform.h"

// A plain file's size comes with its attributes, without opening the file: under Wine an open
// costs several times as much as the whole query. A folder or a link is measured by TreeSize,
// whose rules decide what it counts.
uint64_t Win32PlatformServices::FileSize(const std::string& path) {
  std::optional<std::wstring> widePath = ToUtf16(path);
  WIN32_FILE_ATTRIBUTE_DATA attributes;
  if (!widePath || !GetFileAttributesExW(widePath->c_str(), GetFileExInfoStandard, &attributes)) {
    return 0;
  }
  if ((attributes.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) !=
      0) {
    return TreeSize(path);
  }
  return (static_cast<uint64_t>(attributes.nFileSizeHigh) << 32) | attributes.nFileSizeLow;
}
