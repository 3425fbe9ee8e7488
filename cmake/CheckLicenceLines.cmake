# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# cmake -DROOT=<source tree> -P CheckLicenceLines.cmake
# Fails when a source or build file does not begin with the two licence lines (a script may have its
# "#!" line before them).

cmake_minimum_required(VERSION 3.25)
set(patterns "")
foreach(folder src studio designer examples tests benchmarks cmake tools)
  foreach(ending h cpp cmake sh sql)
    list(APPEND patterns "${ROOT}/${folder}/*.${ending}")
  endforeach()
  list(APPEND patterns "${ROOT}/${folder}/CMakeLists.txt")
endforeach()
file(GLOB_RECURSE files RELATIVE "${ROOT}" ${patterns})
foreach(file CMakeLists.txt run test .ci/run)
  if(EXISTS "${ROOT}/${file}")
    list(APPEND files "${file}")
  endif()
endforeach()

set(mark "(//|#|--)")
set(head "^(#![^\n]*\n)?${mark} SPDX-FileCopyrightText: [0-9-]+ The ZelWebServiceControls authors\n")
string(APPEND head "${mark} SPDX-License-Identifier: GPL-3.0-or-later\n")
set(problems "")
foreach(file IN LISTS files)
  file(READ "${ROOT}/${file}" text LIMIT 400)
  if(NOT text MATCHES "${head}")
    list(APPEND problems "${file}")
  endif()
endforeach()

if(problems)
  list(JOIN problems "\n  " text)
  message(FATAL_ERROR "These files do not begin with the two licence lines:\n  ${text}")
endif()
list(LENGTH files count)
message(STATUS "${count} files begin with the two licence lines")
