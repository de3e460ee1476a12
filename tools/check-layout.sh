#!/usr/bin/env bash
# Opens every page and dialog of the program in each of the 36 languages under a private Xvfb,
# one process per language, and fails when a text is cut off or controls overlap or leave their
# window. Pictures: build/mingw/layout-shots/<language>/. Arguments, if any, are ctest -R
# patterns of the languages to run (for example: de fr ar); without them all 36 run.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
cd "$VP_ROOT"

vp_install_missing
cmake --preset mingw >/dev/null || vp_fail "configuring the Windows build failed"
cmake --build --preset mingw -j2 --target VantrelPlayerApp ui_layout_tests ||
  vp_fail "building the program and its layout test failed"

pattern='^wine\.ui_layout\.'
if [ $# -gt 0 ]; then
  pattern="^wine\\.ui_layout\\.($(IFS='|'; echo "$*"))\$"
fi
trap 'vp_stop_wine_prefix "$VP_ROOT/build/mingw/wine-ui"; vp_stop_xvfb' EXIT
vp_start_xvfb
ctest --test-dir build/mingw -R "$pattern" --output-on-failure
