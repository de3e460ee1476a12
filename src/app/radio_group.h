#pragma once

#include <windows.h>

// A radio group starts at firstId and runs over the following siblings up to the next window
// with WS_GROUP; only radio buttons count, numbered from 0. -1 is no button.

// The number of the checked button (the last one when several are), or -1.
int ReadRadioGroup(HWND dialog, int firstId);
// Checks button `index` and unchecks the others; -1 unchecks all.
void WriteRadioGroup(HWND dialog, int firstId, int index);
