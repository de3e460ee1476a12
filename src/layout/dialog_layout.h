#pragma once

#include <windows.h>

#include <initializer_list>

// Measures every visible text of the dialog with the dialog's font and fits the controls to
// them (see layout_plan.h): call it once the texts are set. The controls named in
// bottomBlockIds form the block at the bottom of a page. A modal dialog grows to what its texts
// need; the result is the client height they need, for a page to ask its sheet for.
// Right-to-left dialogs are mirrored by the window manager itself (WS_EX_LAYOUTRTL); the
// positions here are in the dialog's own logical coordinates.
int FitDialogToTexts(HWND dialog, std::initializer_list<int> bottomBlockIds = {});

// The program is aware of the system's display scale: it draws at the dots per inch the system
// had when it started, and every size it gives in pixels is a size at 96 dots per inch grown in
// that proportion (MulDiv(pixels, dpi, 96)).
int DotsPerInch(HWND window);
int ScaledPixels(HWND window, int pixelsAt96);

// Makes the window taller by `grow` pixels, keeping its place and its width.
void GrowWindowHeight(HWND window, int grow);
