# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# zel_check_layers(): stops configure when a target links a target of a higher floor, or of its
# own floor without the edge being listed. It reads the real link lists, so target_link_libraries
# called anywhere is seen.

include("${CMAKE_CURRENT_LIST_DIR}/LayerTable.cmake")

function(zel_targets_below dir out)
  get_property(found DIRECTORY "${dir}" PROPERTY BUILDSYSTEM_TARGETS)
  get_property(subdirs DIRECTORY "${dir}" PROPERTY SUBDIRECTORIES)
  foreach(sub IN LISTS subdirs)
    zel_targets_below("${sub}" below)
    list(APPEND found ${below})
  endforeach()
  set(${out} "${found}" PARENT_SCOPE)
endfunction()

function(zel_target_folder target out)
  get_target_property(source_dir ${target} SOURCE_DIR)
  file(RELATIVE_PATH folder "${CMAKE_SOURCE_DIR}" "${source_dir}")
  set(${out} "${folder}" PARENT_SCOPE)
endfunction()

# The targets of this project that `target` names in its link lists, also inside generator
# expressions.
function(zel_linked_targets target out)
  set(found "")
  foreach(property LINK_LIBRARIES INTERFACE_LINK_LIBRARIES)
    get_target_property(links ${target} ${property})
    string(REGEX MATCHALL "[A-Za-z0-9_+.-]+(::[A-Za-z0-9_+.-]+)*" names "${links}")
    foreach(name IN LISTS names)
      if(NOT TARGET "${name}")
        continue()
      endif()
      get_target_property(real "${name}" ALIASED_TARGET)
      if(real)
        set(name "${real}")
      endif()
      get_target_property(imported "${name}" IMPORTED)
      if(NOT imported)
        list(APPEND found "${name}")
      endif()
    endforeach()
  endforeach()
  set(${out} "${found}" PARENT_SCOPE)
endfunction()

function(zel_check_layers)
  zel_targets_below("${CMAKE_SOURCE_DIR}" targets)
  foreach(target IN LISTS targets)
    zel_target_folder(${target} path)
    zel_folder_layer("${path}" from from_layer)
    if(from STREQUAL "")
      if(path MATCHES "^src/")
        message(FATAL_ERROR "${target}: ${path} has no floor in cmake/LayerTable.cmake.")
      endif()
      continue()
    endif()
    zel_linked_targets(${target} links)
    foreach(link IN LISTS links)
      zel_target_folder("${link}" link_path)
      zel_folder_layer("${link_path}" to to_layer)
      if(to STREQUAL "")
        continue()
      endif()
      zel_edge_allowed("${from}" "${from_layer}" "${to}" "${to_layer}" ok)
      if(NOT ok)
        message(FATAL_ERROR
          "${target} (${from}, layer ${from_layer}) must not link "
          "${link} (${to}, layer ${to_layer}): links only go down.")
      endif()
    endforeach()
  endforeach()
endfunction()
