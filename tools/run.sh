#!/usr/bin/env bash
# Builds the Windows program and shows it under Wine with a demo profile in a private prefix.
# With no display (or with VP_SCREENSHOTS=1) it starts a private Xvfb and makes the README's
# pictures in docs/pictures: every page and dialog in English, the Storage page in German,
# Japanese and Arabic, the Storage page and its by-site dialog at 144 dots per inch, and the
# Hebrew by-site dialog (all pictures of those runs stay in build/mingw/layout-shots).
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
cd "$VP_ROOT"

vp_install_missing
vp_use_ccache
vp_log "building the Windows program (mingw-w64)"
cmake --preset mingw >/dev/null || vp_fail "configuring the Windows build failed"
cmake --build --preset mingw -j2 || vp_fail "building the Windows program failed"

export VP_WINEPREFIX="$VP_ROOT/build/mingw/wine-demo"
app="$VP_ROOT/build/mingw/src/app/VantrelPlayerApp.exe"
setup="$VP_ROOT/build/mingw/tools/vp_demo_profile.exe"
[ -f "$app" ] || vp_fail "VantrelPlayerApp.exe was not built"

if [ -z "${DISPLAY:-}" ] || [ -n "${VP_SCREENSHOTS:-}" ]; then
  # Wine's desktop process binds to the display of the first program of the prefix, so the
  # display comes first.
  trap 'vp_stop_wine_prefix "$VP_ROOT/build/mingw/wine-layout"; vp_stop_xvfb' EXIT
  [ -n "${DISPLAY:-}" ] || vp_start_xvfb
  # The layout test opens every page and dialog and saves a picture of each; English shows
  # them all, German, Japanese and Arabic the Storage page. These are the README's pictures.
  vp_log "pictures of every page and dialog"
  ctest --test-dir build/mingw -R '^wine\.ui_layout\.(en-US|de|ja|ar|he|en-US\.144dpi)$' \
    --output-on-failure ||
    echo "WARNING: the layout check found faults (see above); the pictures show them" >&2
  vp_stop_wine_prefix "$VP_ROOT/build/mingw/wine-layout"
  pictures="$VP_ROOT/docs/pictures"
  mkdir -p "$pictures"
  rm -f "$pictures"/*.png
  for picture in "$VP_ROOT"/build/mingw/layout-shots/en-US/*.png; do
    cp "$picture" "$pictures/en-US-$(basename "$picture")"
  done
  for language in de ja ar; do
    cp "$VP_ROOT/build/mingw/layout-shots/$language/1-storage.png" "$pictures/$language-1-storage.png"
  done
  for picture in 1-storage storage-by-site; do
    cp "$VP_ROOT/build/mingw/layout-shots/en-US-144dpi/$picture.png" \
      "$pictures/en-US-144dpi-$picture.png"
  done
  cp "$VP_ROOT/build/mingw/layout-shots/he/storage-by-site.png" "$pictures/he-storage-by-site.png"
  ls "$pictures"
  exit 0
fi

# Shown on the user's own desktop: its window manager draws and manages the windows.
export VP_WINE_MANAGED=Y
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

vp_log "starting the settings manager (close its window to end)"
"$VP_ROOT/tools/wine-run" "$app" || true
