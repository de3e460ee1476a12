#!/usr/bin/env bash
# Builds the Windows program and shows it under Wine with a demo profile in a private prefix.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
cd "$VP_ROOT"

vp_install_missing
vp_log "building the Windows program (mingw-w64)"
cmake --preset mingw >/dev/null || vp_fail "configuring the Windows build failed"
cmake --build --preset mingw -j2 || vp_fail "building the Windows program failed"

export VP_WINEPREFIX="$VP_ROOT/build/mingw/wine-demo"
cli="$VP_ROOT/build/mingw/src/cli/vpsettings.exe"
[ -f "$cli" ] || vp_fail "vpsettings.exe was not built"
vp_log "data locations in the demo profile ($VP_WINEPREFIX)"
"$VP_ROOT/tools/wine-run" "$cli" paths
vp_stop_wine_prefix "$VP_WINEPREFIX"
