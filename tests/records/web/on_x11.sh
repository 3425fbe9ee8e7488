#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# on_x11.sh TEST: runs a test program in a real X window under a window manager (without one no window
# gets the focus).
set -euo pipefail
export LSAN_OPTIONS="suppressions=$(dirname "$0")/lsan.supp:print_suppressions=0"
QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1920x1200x24" \
  bash -c 'openbox & manager=$!; "$@"; status=$?; kill "$manager"; exit "$status"' _ "$@"
