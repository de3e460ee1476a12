#!/usr/bin/env bash
# Runs every test: native with sanitizers, the fuzzer for a bounded time, the same unit tests
# built for Windows under Wine, and the UI tests that drive the real program under Wine + Xvfb.
#
# The two cores are kept busy: the Wine prefixes are created while the Windows program and the
# UI tests' drivers are built; the UI track then starts in the background (it mostly waits for
# windows) while the rest of the Windows build runs, then the Windows core track joins it, while
# the native and fuzz builds and their runs take the processors at a lower priority, so that the
# UI tests' waits stay short. Each track writes its own log; a track's log is shown when it ends.
set -uo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
cd "$VP_ROOT" || exit 1

vp_install_missing
vp_use_ccache
started=$SECONDS
mkdir -p "$VP_ROOT/build"

native_track() {
  cmake --preset asan >/dev/null || return 1
  nice -n 10 cmake --build --preset asan -j2 || return 1
  nice -n 10 ctest --preset asan -j2
}

fuzz_track() {
  [ -f fuzz/CMakeLists.txt ] || { echo "no fuzz targets"; return 0; }
  cmake --preset fuzz >/dev/null || return 1
  # The fuzz targets only: the rest of that tree (the command-line tool) is built and tested
  # by the other tracks.
  nice -n 10 cmake --build --preset fuzz -j2 --target $(fuzz_targets) || return 1
  nice -n 10 "$VP_ROOT/tools/run-fuzzers.sh" "${VP_FUZZ_SECONDS:-60}"
}

fuzz_targets() { "$VP_ROOT/tools/run-fuzzers.sh" --list; }

# The programs the UI track runs; the track starts as soon as they are built.
ui_targets=(VantrelPlayerApp ui_sheet_tests ui_layout_tests)

windows_build_ui() {
  cmake --preset mingw >/dev/null || return 1
  cmake --build --preset mingw -j2 --target "${ui_targets[@]}"
}
windows_build_rest() { nice -n 5 cmake --build --preset mingw -j2; }

# Creating a prefix takes a while (much longer on a busy machine); both are created while the
# Windows build runs, so that no test pays for it. Without a display: the UI track's server is
# stopped before it starts, and its next one takes the track's display.
prepare_prefixes() {
  local prefix
  for prefix in wine-ui wine-layout wine-core; do
    vp_stop_wine_prefix "$VP_ROOT/build/mingw/$prefix"
    env -u DISPLAY VP_WINEPREFIX="$VP_ROOT/build/mingw/$prefix" \
      $([ $prefix != wine-core ] && echo VP_WINE_DPI=96) "$VP_ROOT/tools/wine-run" cmd /c exit ||
      return 1
    vp_stop_wine_prefix "$VP_ROOT/build/mingw/$prefix"
  done
}

windows_core_track() {
  # A server left over from an aborted run would serve this run with its old state.
  vp_stop_wine_prefix "$VP_ROOT/build/mingw/wine-core"
  local status=0
  ctest --preset mingw-core || status=$?
  vp_stop_wine_prefix "$VP_ROOT/build/mingw/wine-core"
  return $status
}

# One lane of the UI track: the tests of one label, in their own prefix, on their own display.
ui_lane() {
  local label="$1" prefix="$VP_ROOT/build/mingw/$2"
  # A server left over from an aborted run would keep the display it was started with.
  vp_stop_wine_prefix "$prefix"
  vp_start_xvfb
  local status=0
  ctest --preset mingw-ui -L "^${label}\$" || status=$?
  vp_stop_wine_prefix "$prefix"
  vp_stop_xvfb
  return $status
}

# The layout tests and the others run side by side: most of their time is spent waiting for
# windows, not on the processors.
windows_ui_track() {
  local logs="$VP_ROOT/build/ui-lanes" sheet layout status=0
  mkdir -p "$logs"
  ui_lane ui-sheet wine-ui >"$logs/sheet.log" 2>&1 &
  sheet=$!
  ui_lane ui-layout wine-layout >"$logs/layout.log" 2>&1 &
  layout=$!
  wait $sheet || status=1
  wait $layout || status=1
  cat "$logs/sheet.log" "$logs/layout.log"
  return $status
}

# Runs one track in the foreground, its output on the terminal and in its log.
run_track() {
  local name="$1"
  shift
  vp_log "track: $name"
  "$@" 2>&1 | tee "$VP_ROOT/build/track-${name}.log"
  echo "${PIPESTATUS[0]}" >"$VP_ROOT/build/track-${name}.status"
}

# Starts one track in the background; its log is shown by finish_track.
start_track() {
  local name="$1"
  shift
  vp_log "track: $name (in the background)"
  rm -f "$VP_ROOT/build/track-${name}.status"
  (
    "$@" >"$VP_ROOT/build/track-${name}.log" 2>&1
    echo $? >"$VP_ROOT/build/track-${name}.status"
  ) &
  background+=("$!:$name")
}

finish_tracks() {
  local entry
  for entry in "${background[@]}"; do
    wait "${entry%%:*}"
    vp_log "track: ${entry#*:} (log: build/track-${entry#*:}.log)"
    cat "$VP_ROOT/build/track-${entry#*:}.log"
  done
  background=()
}

background=()
tracks=(wine-prefixes windows-build)
start_track wine-prefixes prepare_prefixes
run_track windows-build windows_build_ui
finish_tracks
if [ "$(cat build/track-windows-build.status)" -eq 0 ]; then
  tracks+=(windows-ui windows-build-rest)
  start_track windows-ui windows_ui_track
  run_track windows-build-rest windows_build_rest
  if [ "$(cat build/track-windows-build-rest.status)" -eq 0 ]; then
    tracks+=(windows-core)
    start_track windows-core windows_core_track
  fi
fi
tracks+=(native-asan fuzz)
run_track native-asan native_track
run_track fuzz fuzz_track
finish_tracks

echo
vp_log "summary"
failed=0
total_passed=0
total_failed=0
for name in "${tracks[@]}"; do
  log="$VP_ROOT/build/track-${name}.log"
  status=$(cat "$VP_ROOT/build/track-${name}.status" 2>/dev/null || echo 1)
  # One ctest summary per run of ctest (the UI track has one per lane).
  while read -r summary; do
    out_of=$(echo "$summary" | sed -E 's/.*out of ([0-9]+).*/\1/')
    fails=$(echo "$summary" | sed -E 's/.*passed, ([0-9]+) tests failed.*/\1/')
    total_passed=$((total_passed + out_of - fails))
    total_failed=$((total_failed + fails))
  done < <(grep -E 'tests passed, [0-9]+ tests failed out of [0-9]+' "$log")
  if [ "$status" -eq 0 ]; then
    echo "  PASS $name"
  else
    echo "  FAIL $name (exit $status, log: $log)"
    failed=1
  fi
done
echo "all tracks: ${total_passed} passed, ${total_failed} failed, $((SECONDS - started)) s"
exit $failed
