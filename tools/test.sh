#!/usr/bin/env bash
# Runs every test: native with sanitizers, the fuzzer for a bounded time, the same unit tests
# built for Windows under Wine, and the UI tests that drive the real program under Wine + Xvfb.
set -uo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
cd "$VP_ROOT" || exit 1

vp_install_missing

results=()
failed=0
total_passed=0
total_failed=0

# Runs one track; its ctest summary is counted into the closing line.
run_track() {
  local name="$1"
  shift
  vp_log "track: $name"
  local log="$VP_ROOT/build/track-${name}.log"
  mkdir -p "$VP_ROOT/build"
  "$@" 2>&1 | tee "$log"
  local status=${PIPESTATUS[0]}
  local summary
  summary=$(grep -E 'tests passed, [0-9]+ tests failed out of [0-9]+' "$log" | tail -1)
  if [ -n "$summary" ]; then
    local out_of fails
    out_of=$(echo "$summary" | sed -E 's/.*out of ([0-9]+).*/\1/')
    fails=$(echo "$summary" | sed -E 's/.*passed, ([0-9]+) tests failed.*/\1/')
    total_passed=$((total_passed + out_of - fails))
    total_failed=$((total_failed + fails))
  fi
  if [ "$status" -eq 0 ]; then
    results+=("PASS $name")
  else
    results+=("FAIL $name (exit $status, log: $log)")
    failed=1
  fi
}

native_track() {
  cmake --preset asan >/dev/null || return 1
  cmake --build --preset asan -j2 || return 1
  ctest --preset asan -j2
}

fuzz_track() {
  [ -f fuzz/CMakeLists.txt ] || { echo "no fuzz targets"; return 0; }
  cmake --preset fuzz >/dev/null || return 1
  cmake --build --preset fuzz -j2 || return 1
  "$VP_ROOT/tools/run-fuzzers.sh" "${VP_FUZZ_SECONDS:-60}"
}

windows_core_track() {
  cmake --preset mingw >/dev/null || return 1
  cmake --build --preset mingw -j2 || return 1
  # A server left over from an aborted run would serve this run with its old state.
  vp_stop_wine_prefix "$VP_ROOT/build/mingw/wine-core"
  local status=0
  ctest --preset mingw-core || status=$?
  vp_stop_wine_prefix "$VP_ROOT/build/mingw/wine-core"
  return $status
}

windows_ui_track() {
  # A server left over from an aborted run would keep the display it was started with.
  vp_stop_wine_prefix "$VP_ROOT/build/mingw/wine-ui"
  vp_start_xvfb
  local status=0
  ctest --preset mingw-ui || status=$?
  vp_stop_wine_prefix "$VP_ROOT/build/mingw/wine-ui"
  vp_stop_xvfb
  return $status
}

run_track native-asan native_track
run_track fuzz fuzz_track
run_track windows-core windows_core_track
run_track windows-ui windows_ui_track

echo
vp_log "summary"
printf '  %s\n' "${results[@]}"
echo "all tracks: ${total_passed} passed, ${total_failed} failed"
exit $failed
