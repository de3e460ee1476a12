#!/usr/bin/env bash
# Prints how much of the code is tests: non-blank lines of source files under tests/ against all
# of src/, tools/, fuzz/, bench/ and tests/ (test data such as .sol files is not counted).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

non_blank_lines() {
  git ls-files -- "$@" | grep -E '\.(c|cc|cpp|h|hpp|py|sh|rc)$|^tools/wine-run$' |
    xargs -r cat | grep -cv '^[[:space:]]*$'
}

tests=$(non_blank_lines tests)
code=$(non_blank_lines src tools fuzz bench)
total=$((tests + code))
echo "tests: $tests of $total non-blank lines ($(awk -v t="$tests" -v a="$total" 'BEGIN { printf "%.3f", t / a }'))"
