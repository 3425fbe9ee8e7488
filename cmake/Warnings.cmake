# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# ZelWarnings: the one place where warnings, sanitizers and strict Qt macros are switched on.

add_library(ZelWarnings INTERFACE)
target_compile_options(ZelWarnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
  -Wformat=2 -Wduplicated-cond -Wlogical-op -Wextra-semi
  $<$<BOOL:${ZEL_WERROR}>:-Werror>)
target_compile_definitions(ZelWarnings INTERFACE
  QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH QT_NO_URL_CAST_FROM_STRING
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(ZEL_SANITIZE)
  # The compiler takes instrumented code for uninitialised where it is not.
  target_compile_options(ZelWarnings INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer
    -Wno-maybe-uninitialized)
  target_link_options(ZelWarnings INTERFACE -fsanitize=address,undefined)
endif()
