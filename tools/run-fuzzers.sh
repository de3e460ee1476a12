#!/usr/bin/env bash
# Runs every fuzz target of the `fuzz` preset, sharing the given number of processor seconds
# (default 60) between them, each starting from its committed seed corpus; they run side by side
# on two processors.
# Exits non-zero on any crash, leak, timeout or sanitizer report; the input that caused it is
# kept under build/fuzz/artifacts. With --list, prints the targets' names and runs nothing.
set -uo pipefail
seconds="${1:-60}"
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="$root/build/fuzz"

run_target() {
  local name="$1" seeds="$2"
  local binary="$build/fuzz/$name"
  if [ ! -x "$binary" ]; then
    echo "run-fuzzers: $binary is missing; build the fuzz preset first" >&2
    return 1
  fi
  # New inputs go to a scratch corpus; the committed seeds are only read.
  local scratch="$build/corpus/$name"
  local artifacts="$build/artifacts/$name/"
  mkdir -p "$scratch" "$artifacts"
  echo "run-fuzzers: $name for ${seconds}s"
  # -close_fd_mask=2 silences the reader's own diagnostics; libFuzzer keeps its report stream.
  "$binary" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -close_fd_mask=2 \
    -print_final_stats=1 -artifact_prefix="$artifacts" "$scratch" "$seeds"
  local status=$?
  if [ $status -ne 0 ]; then
    echo "run-fuzzers: $name FAILED (exit $status); inputs kept in $artifacts" >&2
    return $status
  fi
}

targets=(settings_reader_fuzzer admin_config_fuzzer settings_json_fuzzer)
corpora=("$root/tests/settings/corpus" "$root/tests/admincfg/corpus" "$root/tests/cli/corpus")
if [ "$seconds" = --list ]; then
  echo "${targets[*]}"
  exit 0
fi
# All at once on two processors: each for half the total, so that the processors spend the
# total on them between them.
processors=2
[ ${#targets[@]} -ge $processors ] || processors=${#targets[@]}
total="$seconds"
seconds=$(( total / processors ))
[ "$seconds" -ge 1 ] || seconds=1
# Each target's output goes to its own log, shown whole once it ends, so reports do not mix.
logs="$build/fuzz-logs"
mkdir -p "$logs"
pids=()
for i in "${!targets[@]}"; do
  run_target "${targets[$i]}" "${corpora[$i]}" >"$logs/${targets[$i]}.log" 2>&1 &
  pids+=("$!")
done
failed=0
for i in "${!targets[@]}"; do
  wait "${pids[$i]}" || failed=1
  cat "$logs/${targets[$i]}.log"
done
exit $failed
