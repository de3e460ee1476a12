#pragma once
// Resources every page shares. Plain #defines: the resource compiler reads this file too.

#define IDI_VANTREL_NOTICE 202

// The block at the bottom of the Storage, Camera and Mic, Playback and Advanced pages that says
// their settings do not reach Chromium-based browsers.
#define IDC_NOTICE_TEXT 1160
#define IDC_NOTICE_LINK 1161
#define IDC_NOTICE_RULE 1162
#define IDC_NOTICE_ICON 1164
