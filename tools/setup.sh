# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Sourced by ./run and ./test: makes sure that the Debian packages of the named lists are there.

# missing_packages LIST...: the packages of tools/packages/LIST.txt that are not installed.
missing_packages() {
  local list
  for list in "$@"; do
    sed -e 's/#.*//' -e '/^[[:space:]]*$/d' "tools/packages/$list.txt"
  done | while read -r package; do
    dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || echo "$package"
  done
}

# ensure_packages LIST...: installs what is missing when run as root, else says what to install.
ensure_packages() {
  command -v dpkg-query >/dev/null || return 0 # not Debian: the build says what it misses
  local missing
  missing=$(missing_packages "$@" | tr '\n' ' ')
  [ -z "${missing// /}" ] && return 0
  if [ "$(id -u)" -ne 0 ]; then
    echo "These Debian packages are missing; install them and start again:" >&2
    echo "  sudo apt-get install $missing" >&2
    exit 1
  fi
  echo "Installing: $missing"
  local log
  log=$(mktemp)
  export DEBIAN_FRONTEND=noninteractive
  # shellcheck disable=SC2086 # a list of words is wanted
  if ! apt-get install -y -q --no-install-recommends $missing >"$log" 2>&1; then
    apt-get update -q >>"$log" 2>&1 || true
    # shellcheck disable=SC2086
    if ! apt-get install -y -q --no-install-recommends $missing >>"$log" 2>&1; then
      tail -20 "$log" >&2
      echo "The packages could not be installed." >&2
      exit 1
    fi
  fi
  rm -f "$log"
}

# build PRESET [cmake options]: configures and builds.
build() {
  local preset=$1
  shift
  export CCACHE_BASEDIR="${CCACHE_BASEDIR:-$PWD}" CCACHE_NOHASHDIR=1
  # Without these ccache does not keep what was compiled with a precompiled header.
  export CCACHE_SLOPPINESS="${CCACHE_SLOPPINESS:-pch_defines,time_macros}"
  cmake --preset "$preset" "$@" >/dev/null
  cmake --build --preset "$preset" ${BUILD_TARGETS:+--target $BUILD_TARGETS}
}
