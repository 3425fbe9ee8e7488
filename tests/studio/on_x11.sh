#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# on_x11.sh STUDIO SERVICE: walks through Studio in a real X window under a window manager (without one
# no window gets the focus), in a home folder of its own, and demands a picture of every step.
set -euo pipefail
studio=$1
service=$2
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
mkdir -p "$home/pictures"
[ "$(id -u)" != 0 ] || export QTWEBENGINE_DISABLE_SANDBOX=1 # or the browser engine refuses
env -u QT_SCALE_FACTOR -u QT_STYLE_OVERRIDE HOME="$home" XDG_RUNTIME_DIR="$home" \
  XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" QT_QPA_PLATFORM=xcb \
  xvfb-run -a -s "-screen 0 1920x1200x24" \
  bash -c 'openbox & manager=$!; "$@"; status=$?; kill "$manager"; exit "$status"' _ \
  "$studio" --tour-part "$home/pictures" --service-program "$service"
count=$(find "$home/pictures" -name '*.png' | wc -l)
echo "$count pictures"
[ "$count" -ge 150 ]
