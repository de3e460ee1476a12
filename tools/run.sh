#!/usr/bin/env bash
# Builds the Windows program and shows it under Wine with a demo profile in a private prefix.
# With no display it starts a private Xvfb, opens every page once and saves a screenshot of
# each under build/screenshots.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
cd "$VP_ROOT"

vp_install_missing
vp_log "building the Windows program (mingw-w64)"
cmake --preset mingw >/dev/null || vp_fail "configuring the Windows build failed"
cmake --build --preset mingw -j2 || vp_fail "building the Windows program failed"

export VP_WINEPREFIX="$VP_ROOT/build/mingw/wine-demo"
app="$VP_ROOT/build/mingw/src/app/VantrelPlayerApp.exe"
setup="$VP_ROOT/build/mingw/tests/ui/vp_demo_profile.exe"
[ -f "$app" ] || vp_fail "VantrelPlayerApp.exe was not built"

# The sheet's X window: Wine names the class of every window of a program after the program and
# marks it with the process id; at start the sheet is the program's only visible window.
sheet_window() {
  xdotool search --all --onlyvisible --pid "$1" --class '^vantrelplayerapp\.exe$' 2>/dev/null |
    head -1
}

# Wine's desktop process binds to the display of the first program of the prefix, so the
# display comes first.
screenshots=""
if [ -z "${DISPLAY:-}" ] || [ -n "${VP_SCREENSHOTS:-}" ]; then
  screenshots=1
  trap 'vp_stop_wine_prefix "$VP_WINEPREFIX"; vp_stop_xvfb' EXIT
  [ -n "${DISPLAY:-}" ] || vp_start_xvfb
fi
vp_stop_wine_prefix "$VP_WINEPREFIX"

vp_log "preparing the demo profile in $VP_WINEPREFIX"
# The players' 32-bit installers write these keys; with a plug-in present the Updates page shows.
for key in VantrelPlayerPlugin VantrelPlayerPepper; do
  "$VP_ROOT/tools/wine-run" reg add "HKLM\\SOFTWARE\\Tessaline\\$key" /v Version /t REG_SZ \
    /d "32.0.0.$([ $key = VantrelPlayerPlugin ] && echo 465 || echo 466)" /reg:32 /f >/dev/null ||
    vp_fail "writing the demo player key $key failed"
done
if [ -f "$setup" ]; then
  "$VP_ROOT/tools/wine-run" "$setup" || vp_fail "writing the demo sites failed"
fi

# Starts the program with one command line, waits for its sheet, optionally saves a screenshot,
# then ends that program (by its own process id).
show_page() {
  local keyword="$1" shot="${2:-}"
  "$VP_ROOT/tools/wine-run" "$app" ${keyword:+"startupdialog=$keyword"} &
  local pid=$!
  local tries=0
  local window=""
  until window=$(sheet_window "$pid") && [ -n "$window" ]; do
    tries=$((tries + 1))
    if [ $tries -gt 300 ] || ! kill -0 "$pid" 2>/dev/null; then
      kill "$pid" 2>/dev/null || true
      local status=0
      wait "$pid" || status=$?
      vp_fail "the settings sheet (exit $status) did not appear (startupdialog=$keyword)"
    fi
    sleep 0.2
  done
  if [ -n "$shot" ]; then
    sleep 1
    import -window root "$shot" || vp_fail "the screenshot $shot failed"
    # Only the sheet: the rest of the private screen is empty.
    convert "$shot" -trim +repage "$shot" || vp_fail "cropping the screenshot $shot failed"
    echo "$shot"
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
  else
    wait "$pid" || true
  fi
}

if [ -z "$screenshots" ]; then
  vp_log "starting the settings manager (close its window to end)"
  show_page ""
else
  shots="$VP_ROOT/build/screenshots"
  mkdir -p "$shots"
  rm -f "$shots"/*.png
  vp_log "screenshots of every page"
  # With the Updates page present the keywords "advanced" and "updates" select the fourth and
  # fifth tabs, that is Updates and Advanced.
  show_page storage "$shots/1-storage.png"
  show_page cammic "$shots/2-camera-and-mic.png"
  show_page playback "$shots/3-playback.png"
  show_page advanced "$shots/4-updates.png"
  show_page updates "$shots/5-advanced.png"
fi
