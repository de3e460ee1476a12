#pragma once

#include <windows.h>

// Measures every text of the dialog with the dialog's font and fits the controls to them (see
// layout_plan.h). Right-to-left dialogs are mirrored by the window manager itself
// (WS_EX_LAYOUTRTL); the positions here are in the dialog's own logical coordinates.
void FitDialogToTexts(HWND dialog);
