#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Texts of pages and dialogs in the window system's wide characters. A missing text is
// nullopt; the operations leave it unchanged.

// Turns the whole text into one link: "<a>text</a>". False for a missing text.
bool WrapLink(std::optional<std::wstring>& text);
// text := text + blank line + more. False, changing nothing, when more is missing.
bool AppendParagraph(std::optional<std::wstring>& text, const std::optional<std::wstring>& more);

// MessageBox flags of a confirmation: OK/Cancel, warning icon, Cancel the default; right-aligned
// right-to-left reading for Arabic and Hebrew users.
inline constexpr uint32_t kConfirmBoxFlags = 0x131;
inline constexpr uint32_t kConfirmBoxRightToLeftFlags = 0x180131;
inline constexpr uint32_t kErrorBoxFlags = 0x10;
uint32_t ConfirmBoxFlags(bool rightToLeft);
