#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# with_display.sh TEST: runs a test program beside an X server that nothing is shown on. The browser
# engine draws by OpenGL, which the offscreen platform only has where there is an X server.
export LSAN_OPTIONS="suppressions=$(dirname "$0")/lsan.supp:print_suppressions=0"
exec xvfb-run -a -s "-screen 0 1280x1024x24" "$@"
