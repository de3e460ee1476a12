# Shared by tools/run.sh and tools/test.sh: installing what is missing, Xvfb and Wine helpers.
# shellcheck shell=bash

VP_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
VP_PACKAGES=(
  cmake ninja-build g++ python3 git
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  clang libclang-rt-14-dev
  nlohmann-json3-dev libcli11-dev libvalijson-dev
  # The test that drives vpsettings apply through the example playbook.
  ansible-core
  g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 mingw-w64-x86-64-dev
  wine wine64 xvfb xdotool x11-utils imagemagick
  # Fonts with the Chinese, Japanese, Korean and Thai letters (and Latin beside them), so that
  # those languages are drawn and measured as they would be on a user's system.
  fonts-wqy-microhei fonts-tlwg-loma-ttf
)

vp_fail() {
  echo "ERROR: $*" >&2
  exit 1
}

vp_log() { echo "==> $*"; }

# Installs every package of VP_PACKAGES that is not installed yet (apt-get update once).
vp_install_missing() {
  local missing=()
  local package
  for package in "${VP_PACKAGES[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
      missing+=("$package")
    fi
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  command -v apt-get >/dev/null || vp_fail "apt-get not found; install by hand: ${missing[*]}"
  local sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  vp_log "installing: ${missing[*]}"
  $sudo apt-get update -qq || vp_fail "apt-get update failed (no network or no package source?)"
  if ! DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >/tmp/vp-apt.log 2>&1; then
    tail -20 /tmp/vp-apt.log >&2
    for package in "${missing[@]}"; do
      dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" ||
        echo "ERROR: package could not be installed: $package" >&2
    done
    vp_fail "installing the packages above failed (full log: /tmp/vp-apt.log)"
  fi
}

# Starts a private Xvfb on a display it picks itself; sets VP_XVFB_PID and DISPLAY. The
# argument, if any, is the screen's size (default 1280x1024).
vp_start_xvfb() {
  local size="${1:-1280x1024}"
  local fifo_dir
  fifo_dir=$(mktemp -d) || vp_fail "mktemp failed"
  mkfifo "$fifo_dir/display"
  # -displayfd: the server takes the first free display and writes its number once it listens.
  Xvfb -displayfd 9 -screen 0 "${size}x24" -nolisten tcp 9>"$fifo_dir/display" >/dev/null 2>&1 &
  VP_XVFB_PID=$!
  local number=""
  read -r -t 60 number <"$fifo_dir/display" || true
  rm -rf "$fifo_dir"
  [ -n "$number" ] || vp_fail "Xvfb did not start (no display number within 60 s)"
  export DISPLAY=":${number}"
  vp_log "Xvfb (pid $VP_XVFB_PID) on display $DISPLAY"
}

vp_stop_xvfb() {
  if [ -n "${VP_XVFB_PID:-}" ]; then
    kill "$VP_XVFB_PID" 2>/dev/null || true
    wait "$VP_XVFB_PID" 2>/dev/null || true
    VP_XVFB_PID=""
  fi
}

# Stops the wineserver (and so every process) of one private prefix and waits until it is gone.
vp_stop_wine_prefix() {
  local prefix="$1"
  [ -d "$prefix" ] || return 0
  WINEPREFIX="$prefix" wineserver -k 2>/dev/null || true
  WINEPREFIX="$prefix" wineserver -w 2>/dev/null || true
}

# Compiles through ccache when it is installed (read when a build folder is first configured).
vp_use_ccache() {
  command -v ccache >/dev/null || return 0
  export CMAKE_C_COMPILER_LAUNCHER="${CMAKE_C_COMPILER_LAUNCHER:-ccache}"
  export CMAKE_CXX_COMPILER_LAUNCHER="${CMAKE_CXX_COMPILER_LAUNCHER:-ccache}"
}
