# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# The floors of the house: a folder links and includes only folders with a lower number.
# Read by Layers.cmake (links, at configure) and CheckIncludes.cmake (includes, as a test).

set(ZEL_LAYERS
  "0:src/platform/core"
  "1:src/common/contract" "1:src/platform/widgets" "1:src/platform/pictures"
  "2:src/common"
  "3:src/webcontrols" "3:src/datavisualization" "3:src/testsupport"
  "3:src/service/client" "3:src/service/store" "3:src/service/daemon"
  "4:src/login" "4:src/projects" "4:src/themes" "4:src/assets" "4:src/records" "4:src/stats"
  "5:src/records/web"
  "6:studio" "6:designer" "6:examples" "6:tests" "6:benchmarks")

# Edges between folders of one floor that are wanted: "from>to".
set(ZEL_SIDEWAYS
  "src/service/daemon>src/service/store"
  "src/records>src/assets")

# Everything on the top floor may use everything, its own floor's shared code included.
set(ZEL_TOP_LAYER 6)

# zel_folder_layer(<path> <out-folder> <out-layer>): the longest listed folder that holds <path>.
function(zel_folder_layer path out_folder out_layer)
  set(best "")
  set(best_layer "")
  foreach(entry IN LISTS ZEL_LAYERS)
    string(REGEX MATCH "^([0-9]+):(.*)$" _ "${entry}")
    set(layer "${CMAKE_MATCH_1}")
    set(folder "${CMAKE_MATCH_2}")
    string(LENGTH "${folder}" length)
    string(LENGTH "${best}" best_length)
    string(FIND "${path}/" "${folder}/" at)
    if(at EQUAL 0 AND length GREATER best_length)
      set(best "${folder}")
      set(best_layer "${layer}")
    endif()
  endforeach()
  set(${out_folder} "${best}" PARENT_SCOPE)
  set(${out_layer} "${best_layer}" PARENT_SCOPE)
endfunction()

# zel_edge_allowed(<from-folder> <from-layer> <to-folder> <to-layer> <out>)
function(zel_edge_allowed from from_layer to to_layer out)
  set(ok FALSE)
  if(from STREQUAL to OR to_layer LESS from_layer OR from_layer EQUAL ZEL_TOP_LAYER)
    set(ok TRUE)
  elseif("${from}>${to}" IN_LIST ZEL_SIDEWAYS)
    set(ok TRUE)
  endif()
  set(${out} ${ok} PARENT_SCOPE)
endfunction()
