#pragma once

#include <cstdint>

// The control classes the program registers with InitCommonControlsEx: links, list views,
// tabs and the standard controls (ICC_LINK_CLASS | ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES |
// ICC_STANDARD_CLASSES). Kept here as numbers so that a test can check them on any system.
inline constexpr uint32_t kCommonControlClasses = 0x8000 | 0x1 | 0x8 | 0x4000;
