#pragma once

#include <windows.h>

#include <string>

// Saves what the screen shows of a window (frame included) as a PNG file; false when the window
// is not wholly on the screen or the picture could not be taken or written.
bool SaveWindowPng(HWND window, const std::wstring& path);
