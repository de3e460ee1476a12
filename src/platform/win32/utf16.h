#pragma once

#include <optional>
#include <string>
#include <string_view>

// UTF-8 <-> UTF-16 at the boundary of every Windows call (code page 65001).
std::optional<std::wstring> ToUtf16(std::string_view utf8);
std::optional<std::string> ToUtf8(std::wstring_view utf16);
