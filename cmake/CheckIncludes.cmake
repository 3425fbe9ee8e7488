# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# cmake -DROOT=<source tree> -P CheckIncludes.cmake
# Fails when a file includes a header of a higher floor, or one of its own floor without the edge
# being listed, and when a source file is longer than 800 lines.

cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/LayerTable.cmake")
set(problems "")

file(GLOB_RECURSE files RELATIVE "${ROOT}"
  "${ROOT}/src/*.h" "${ROOT}/src/*.cpp" "${ROOT}/studio/*.h" "${ROOT}/studio/*.cpp"
  "${ROOT}/tests/*.h" "${ROOT}/tests/*.cpp" "${ROOT}/benchmarks/*.h" "${ROOT}/benchmarks/*.cpp"
  "${ROOT}/designer/*.h" "${ROOT}/designer/*.cpp" "${ROOT}/examples/*.h" "${ROOT}/examples/*.cpp")

foreach(file IN LISTS files)
  get_filename_component(dir "${file}" DIRECTORY)
  zel_folder_layer("${dir}" from from_layer)
  file(STRINGS "${ROOT}/${file}" includes REGEX "^[ \t]*#[ \t]*include[ \t]*[\"<]")
  foreach(line IN LISTS includes)
    string(REGEX MATCH "[\"<]([^\">]+)[\">]" _ "${line}")
    set(header "${CMAKE_MATCH_1}")
    set(target "")
    foreach(base "${dir}/" "src/" "")
      get_filename_component(found "${ROOT}/${base}${header}" ABSOLUTE)
      if(EXISTS "${found}" AND NOT IS_DIRECTORY "${found}")
        file(RELATIVE_PATH target "${ROOT}" "${found}")
        break()
      endif()
    endforeach()
    if(target STREQUAL "")
      continue() # of a library, or made by the build
    endif()
    get_filename_component(target_dir "${target}" DIRECTORY)
    zel_folder_layer("${target_dir}" to to_layer)
    zel_edge_allowed("${from}" "${from_layer}" "${to}" "${to_layer}" ok)
    if(NOT ok)
      list(APPEND problems "${file} (layer ${from_layer}) includes ${target} (layer ${to_layer})")
    endif()
  endforeach()
  file(READ "${ROOT}/${file}" text)
  string(REGEX REPLACE "[^\n]" "" newlines "${text}")
  string(LENGTH "${newlines}" lines)
  if(lines GREATER 800)
    list(APPEND problems "${file} has ${lines} lines; 800 is the most")
  endif()
endforeach()

if(problems)
  list(JOIN problems "\n  " text)
  message(FATAL_ERROR "The house rules are broken:\n  ${text}")
endif()
list(LENGTH files count)
message(STATUS "${count} files keep to their floor")
