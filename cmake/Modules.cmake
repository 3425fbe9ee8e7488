# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# zel_module(<Name> [WIDGETS] [PUBLIC <libs>...] [PRIVATE <libs>...])
#   The shared library Zel<Name> (alias Zel::<Name>) from every source of the current folder, not of
#   its sub-folders. Headers are included by their path below src/. WIDGETS where it uses Qt Widgets.
# zel_program(<name> <sources>... LINK <libs>...)
# zel_tests([LINK <libs>...])
#   Each tst_*.cpp of the current folder becomes a test of its own.

# Precompiled headers: what nearly every file includes is parsed once for all of them, which is half
# of the time a file takes to compile. The asan preset compiles without, so that each file goes on
# to include what it uses.
#
# zel_shared_headers(<target> [LINK <libs>...] HEADERS <headers>...)
#   Makes what targets take over by target_precompile_headers(... REUSE_FROM <target>). They have to
#   link what it links: macros that these headers look at must be the same everywhere.
function(zel_shared_headers target)
  cmake_parse_arguments(ARG "" "" "LINK;HEADERS" ${ARGN})
  file(WRITE "${CMAKE_BINARY_DIR}/${target}.cpp" "")
  add_library(${target} OBJECT "${CMAKE_BINARY_DIR}/${target}.cpp")
  set_target_properties(${target} PROPERTIES AUTOMOC OFF)
  target_link_libraries(${target} PRIVATE ${ARG_LINK} ZelWarnings)
  target_precompile_headers(${target} PRIVATE
    ${ARG_HEADERS} <algorithm> <functional> <memory> <optional> <vector>)
endfunction()

function(zel_headers)
  zel_shared_headers(ZelCoreHeaders LINK Qt6::Core HEADERS <QtCore>)
  zel_shared_headers(ZelWidgetHeaders LINK Qt6::Widgets HEADERS <QtCore> <QtGui> <QtWidgets>)
endfunction()

function(zel_module name)
  cmake_parse_arguments(ARG "WIDGETS" "" "PUBLIC;PRIVATE" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h *.qrc)
  add_library(Zel${name} SHARED ${sources})
  add_library(Zel::${name} ALIAS Zel${name})
  set_target_properties(Zel${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} AUTORCC ON)
  target_include_directories(Zel${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(Zel${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} ZelWarnings)
  target_link_options(Zel${name} PRIVATE
    $<$<NOT:$<BOOL:${ZEL_SANITIZE}>>:-Wl,--no-undefined>)
  if(ARG_WIDGETS)
    target_precompile_headers(Zel${name} REUSE_FROM ZelWidgetHeaders)
  else()
    target_precompile_headers(Zel${name} REUSE_FROM ZelCoreHeaders)
  endif()
endfunction()

function(zel_program name)
  cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
  add_executable(${name} ${ARG_UNPARSED_ARGUMENTS})
  set_target_properties(${name} PROPERTIES AUTORCC ON)
  target_link_libraries(${name} PRIVATE ${ARG_LINK} ZelWarnings)
endfunction()

# What every test runs with: no screen, plain locale, a fixed time zone with daylight saving.
set(ZEL_TEST_ENVIRONMENT
  "QT_QPA_PLATFORM=offscreen" "LC_ALL=C.UTF-8" "TZ=America/New_York"
  "QT_SCALE_FACTOR=1" "QT_LOGGING_RULES=" "QT_QPA_PLATFORMTHEME=" "QT_STYLE_OVERRIDE=Fusion"
  "ASAN_OPTIONS=detect_leaks=1:new_delete_type_mismatch=0"
  "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/lsan.supp:print_suppressions=0")

function(zel_add_test name)
  add_test(NAME ${name} COMMAND ${ARGN})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "${ZEL_TEST_ENVIRONMENT}" TIMEOUT 600)
  if(name IN_LIST ZEL_LONG_TESTS)
    set_tests_properties(${name} PROPERTIES COST 60)
  endif()
endfunction()

# Each test links Qt Network and leaves out where Qt Test would look for a test's data, so that the
# headers of Qt Test are the same for all of them.
function(zel_test_headers)
  include(CheckLinkerFlag)
  check_linker_flag(CXX -fuse-ld=gold ZEL_HAS_GOLD)
  zel_shared_headers(ZelTestHeaders LINK Zel::TestSupport
    HEADERS <QtCore> <QtGui> <QtWidgets> <QTest> <QSignalSpy>)
  zel_test_options(ZelTestHeaders)
endfunction()

function(zel_test_options name)
  target_link_libraries(${name} PRIVATE Qt6::Test Qt6::Network)
  target_compile_options(${name} PRIVATE -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR)
endfunction()

# zel_test_program(<source> <out-name> [LINK <libs>...]): a program of its own that is not yet a test.
function(zel_test_program source out_name)
  cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
  get_filename_component(name "${source}" NAME_WE)
  zel_program(${name} "${source}" LINK ${ARG_LINK} Zel::TestSupport)
  zel_test_options(${name})
  target_precompile_headers(${name} REUSE_FROM ZelTestHeaders)
  # Links in a quarter of the time, of some three hundred programs.
  target_link_options(${name} PRIVATE $<$<BOOL:${ZEL_HAS_GOLD}>:-fuse-ld=gold>)
  # One file, which includes its own moc: to run moc takes a tenth of what a search for more does.
  qt_generate_moc("${source}" "${name}.moc" TARGET ${name})
  target_sources(${name} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${name}.moc")
  target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}")
  target_compile_definitions(${name} PRIVATE
    ZEL_FIXTURES="${CMAKE_SOURCE_DIR}/tests/fixtures" ZEL_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
    ZEL_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
  set_target_properties(${name} PROPERTIES
    AUTOMOC OFF AUTORCC OFF RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  set(${out_name} ${name} PARENT_SCOPE)
endfunction()

function(zel_tests)
  cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
  file(GLOB tests CONFIGURE_DEPENDS tst_*.cpp)
  foreach(source IN LISTS tests)
    zel_test_program("${source}" name LINK ${ARG_LINK})
    zel_add_test(${name} ${name})
  endforeach()
endfunction()
