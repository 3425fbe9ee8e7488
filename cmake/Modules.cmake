# SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# zel_module(<Name> [PUBLIC <libs>...] [PRIVATE <libs>...])
#   The shared library Zel<Name> (alias Zel::<Name>) from every source of the current folder, not of
#   its sub-folders. Headers are included by their path below src/.
# zel_program(<name> <sources>... LINK <libs>...)
# zel_tests([LINK <libs>...])
#   Each tst_*.cpp of the current folder becomes a test of its own.

function(zel_module name)
  cmake_parse_arguments(ARG "" "" "PUBLIC;PRIVATE" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h *.qrc)
  add_library(Zel${name} SHARED ${sources})
  add_library(Zel::${name} ALIAS Zel${name})
  set_target_properties(Zel${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} AUTORCC ON)
  target_include_directories(Zel${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(Zel${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} ZelWarnings)
  target_link_options(Zel${name} PRIVATE
    $<$<NOT:$<BOOL:${ZEL_SANITIZE}>>:-Wl,--no-undefined>)
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

# What nearly every test includes, parsed once for all of them: half of the time a test takes to
# compile. Its macros have to be the same everywhere, so each test links Qt Network, and where Qt
# Test would look for a test's data is left out.
function(zel_test_headers)
  file(WRITE "${CMAKE_BINARY_DIR}/testheaders.cpp" "int main() {}\n")
  add_executable(ZelTestHeaders "${CMAKE_BINARY_DIR}/testheaders.cpp")
  set_target_properties(ZelTestHeaders PROPERTIES AUTOMOC OFF)
  zel_test_options(ZelTestHeaders)
  target_link_libraries(ZelTestHeaders PRIVATE Zel::TestSupport ZelWarnings)
  target_precompile_headers(ZelTestHeaders PRIVATE
    <QtCore> <QtGui> <QtWidgets> <QTest> <QSignalSpy> <functional> <memory> <optional> <vector>)
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
  # Empty where a test includes its own; reading the headers would take longer than compiling it.
  set_source_files_properties("${CMAKE_CURRENT_BINARY_DIR}/${name}_autogen/mocs_compilation.cpp"
    PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  target_compile_definitions(${name} PRIVATE
    ZEL_FIXTURES="${CMAKE_SOURCE_DIR}/tests/fixtures" ZEL_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
    ZEL_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
  set_target_properties(${name} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
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
