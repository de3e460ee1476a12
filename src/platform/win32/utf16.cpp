#include "platform/win32/utf16.h"

#include <windows.h>

std::optional<std::wstring> ToUtf16(std::string_view utf8) {
  if (utf8.empty()) return std::wstring();
  int length =
      MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
  if (length <= 0) return std::nullopt;
  std::wstring wide(static_cast<size_t>(length), L'\0');
  if (MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(),
                          length) != length) {
    return std::nullopt;
  }
  return wide;
}

std::optional<std::string> ToUtf8(std::wstring_view utf16) {
  if (utf16.empty()) return std::string();
  int length = WideCharToMultiByte(CP_UTF8, 0, utf16.data(), static_cast<int>(utf16.size()),
                                   nullptr, 0, nullptr, nullptr);
  if (length <= 0) return std::nullopt;
  std::string narrow(static_cast<size_t>(length), '\0');
  if (WideCharToMultiByte(CP_UTF8, 0, utf16.data(), static_cast<int>(utf16.size()), narrow.data(),
                          length, nullptr, nullptr) != length) {
    return std::nullopt;
  }
  return narrow;
}
