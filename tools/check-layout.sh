#!/usr/bin/env bash
# Opens every page and dialog of the program in each of the 36 languages under a private Xvfb,
# one process per language and display scale (96, 120, 144 and 192 dots per inch), and fails when
# a text is cut off or controls overlap or leave their window. Pictures:
# build/mingw/layout-shots/<language>/ at 96 dots per inch, <language>-<dpi>dpi/ at the others.
# Arguments, if any, are ctest -R patterns of the languages to run (for example: de fr ar);
# without them all 36 run. VP_LAYOUT_DPI="96 144" runs only those scales.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
cd "$VP_ROOT"

vp_install_missing
vp_use_ccache
cmake --preset mingw >/dev/null || vp_fail "configuring the Windows build failed"
cmake --build --preset mingw -j2 --target VantrelPlayerApp ui_layout_tests ||
  vp_fail "building the program and its layout test failed"

languages='[^.]+'
[ $# -gt 0 ] && languages="($(IFS='|'; echo "$*"))"
scales='(\.(120|144|192)dpi)?'
if [ -n "${VP_LAYOUT_DPI:-}" ]; then
  alternatives=()
  for dpi in $VP_LAYOUT_DPI; do
    if [ "$dpi" = 96 ]; then alternatives+=(""); else alternatives+=("\\.${dpi}dpi"); fi
  done
  scales="($(IFS='|'; echo "${alternatives[*]}"))"
fi
pattern="^wine\\.ui_layout\\.${languages}${scales}\$"
trap 'vp_stop_wine_prefix "$VP_ROOT/build/mingw/wine-layout"; vp_stop_xvfb' EXIT
# A sheet at 200 % in a language with tall lines is taller than 1024 pixels; the screen of a
# 200 % display is 3840x2160, and a picture can only show what lies on the screen.
vp_start_xvfb 3840x2160
ctest --test-dir build/mingw -R "$pattern" --output-on-failure
