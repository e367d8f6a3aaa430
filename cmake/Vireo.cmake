# The house rules of a build target: one core and one forms library for each room, warnings as
# errors, include paths relative to src/, and the floors checked by the build.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
      CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()

option(VIREO_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)

add_library(vireo_flags INTERFACE)
target_compile_options(vireo_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Werror
  # g++ 12 warns wrongly under -O3 about a literal assigned to a string, about variants that are moved
  # in aggregates, and about strings of a header that was compiled before; clang, which looks at the
  # same code, does not.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  # A tenth of its time it would look for memory to use again, and the assembler would wait.
  $<$<CXX_COMPILER_ID:GNU>:--param=ggc-min-heapsize=500000;-pipe>
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-maybe-uninitialized;-Wno-array-bounds;-Wno-stringop-overflow;-Wno-stringop-overread>
  # In a unity build a test and its fixture are no longer in the file that is compiled.
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<BOOL:${CMAKE_UNITY_BUILD}>>:-Wno-subobject-linkage>)
target_include_directories(vireo_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
if(VIREO_SANITIZE)
  target_compile_options(vireo_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  target_link_options(vireo_flags INTERFACE -fsanitize=address,undefined)
endif()

if(VIREO_FUZZ)
  target_compile_options(vireo_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

define_property(GLOBAL PROPERTY VIREO_TARGETS)

# A folder is a room. Its targets are named after its path below src/: `runedit_map` is the core of
# src/runedit/map, `runedit_map_forms` holds its forms. A header belongs to the target that compiles
# the source of the same name; HEADERS names those that have none. HOT is what benches found slower
# with less than all optimisation.

# vireo_core(SOURCES ... HEADERS ... LINK ...): the room's library without a widget.
function(vireo_core)
  cmake_parse_arguments(ARG "HOT" "" "SOURCES;HEADERS;LINK" ${ARGN})
  _vireo_room_path(name)
  _vireo_library(${name} SOURCES ${ARG_SOURCES} HEADERS ${ARG_HEADERS} LINK ${ARG_LINK})
  set_target_properties(${name} PROPERTIES VIREO_HOT ${ARG_HOT})
endfunction()

# vireo_forms(SOURCES ... HEADERS ... UI ... LINK ...): the room's library of forms or controls.
function(vireo_forms)
  cmake_parse_arguments(ARG "HOT" "" "SOURCES;HEADERS;UI;LINK" ${ARGN})
  _vireo_room_path(name)
  if(NOT name MATCHES "_forms$")
    string(APPEND name _forms)
  endif()
  set(wrapped)
  if(ARG_UI)
    qt_wrap_ui(wrapped ${ARG_UI})
  endif()
  _vireo_library(${name} SOURCES ${ARG_SOURCES} HEADERS ${ARG_HEADERS} UI ${ARG_UI}
    LINK ${ARG_LINK} Qt6::Widgets)
  # The meta objects are compiled with the sources, not in a unit of their own as AUTOMOC would.
  get_target_property(files ${name} VIREO_FILES)
  list(FILTER files INCLUDE REGEX "\\.h$")
  foreach(header IN LISTS files)
    file(STRINGS ${header} meta REGEX "Q_OBJECT|Q_GADGET" LIMIT_COUNT 1)
    if(meta)
      qt_wrap_cpp(wrapped ${header} TARGET ${name})
    endif()
  endforeach()
  target_sources(${name} PRIVATE ${wrapped})
  set_target_properties(${name} PROPERTIES VIREO_HOT ${ARG_HOT})
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
endfunction()

# Headers that most rooms read, compiled once: the library's for cores, with some of the toolkit's for
# cores that use it, with its widgets' for forms. The sources include what they use all the same;
# clang-tidy compiles them without. What shares them is optimised alike: what has to do with the toolkit
# spends its time there and is optimised little, and all but what is HOT less than it could be, which
# takes a quarter of the compiler's time away.
function(vireo_share_headers)
  set(common <algorithm> <array> <chrono> <cstdint> <functional> <map> <memory> <optional> <span>
      <string> <string_view> <utility> <variant> <vector> <fmt/format.h>)
  _vireo_headers(core_headers OPTIMISE -O2 HEADERS ${common} LINK fmt::fmt)
  _vireo_headers(qt_headers OPTIMISE -O1
    HEADERS ${common} <QByteArray> <QDir> <QFile> <QString> <QStringList>
    LINK fmt::fmt Qt6::Core)
  _vireo_headers(forms_headers OPTIMISE -O1
    HEADERS ${common} <QApplication> <QBoxLayout> <QComboBox> <QDialog> <QHeaderView> <QKeyEvent>
            <QLabel> <QLineEdit> <QMenu> <QPainter> <QPushButton> <QScrollArea> <QString> <QStyle>
            <QTableView> <QTimer>
    LINK fmt::fmt Qt6::Widgets)
  get_property(targets GLOBAL PROPERTY VIREO_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(linked ${target} LINK_LIBRARIES)
    _vireo_with_linked("${linked}" all)
    get_target_property(hot ${target} VIREO_HOT)
    if(hot)
      continue()
    elseif("Qt6::Widgets" IN_LIST all)
      set(headers forms_headers)
    elseif("Qt6::Core" IN_LIST all)
      set(headers qt_headers)
    else()
      set(headers core_headers)
    endif()
    target_link_libraries(${target} PRIVATE fmt::fmt)
    target_precompile_headers(${target} REUSE_FROM ${headers})
    get_target_property(options ${headers} COMPILE_OPTIONS)
    target_compile_options(${target} PRIVATE ${options})
  endforeach()
endfunction()

# The libraries, and all that they hand on to those who link them.
function(_vireo_with_linked libraries result)
  set(all)
  while(libraries)
    list(POP_FRONT libraries library)
    if(NOT library IN_LIST all AND TARGET ${library})
      list(APPEND all ${library})
      get_target_property(more ${library} INTERFACE_LINK_LIBRARIES)
      if(more)
        list(APPEND libraries ${more})
      endif()
    endif()
  endwhile()
  set(${result} "${all}" PARENT_SCOPE)
endfunction()

function(_vireo_headers name)
  cmake_parse_arguments(ARG "" "OPTIMISE" "HEADERS;LINK" ${ARGN})
  add_library(${name} OBJECT ${CMAKE_SOURCE_DIR}/cmake/headers.cpp)
  target_link_libraries(${name} PRIVATE ${ARG_LINK} vireo_flags)
  # What is compiled with them is to have the same options.
  target_compile_options(${name} PRIVATE -fpch-preprocess)
  if(CMAKE_BUILD_TYPE STREQUAL "Release")
    target_compile_options(${name} PRIVATE ${ARG_OPTIMISE})
  endif()
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

# vireo_program(NAME SOURCES ... LINK ...)
function(vireo_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LINK} vireo_flags)
  _vireo_register(${name} SOURCES ${ARG_SOURCES} LINK ${ARG_LINK})
endfunction()

function(_vireo_room_path result)
  file(RELATIVE_PATH path ${CMAKE_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR})
  string(REPLACE "/" "_" name ${path})
  set(${result} ${name} PARENT_SCOPE)
endfunction()

function(_vireo_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;UI;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE vireo_flags)
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  _vireo_register(${name} SOURCES ${ARG_SOURCES} ${ARG_HEADERS} ${ARG_UI} LINK ${ARG_LINK})
endfunction()

# Notes for the floors check which files a target holds.
function(_vireo_register name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  if(NOT CMAKE_CURRENT_SOURCE_DIR MATCHES "^${CMAKE_SOURCE_DIR}/src/")
    return()
  endif()
  set(files)
  foreach(source IN LISTS ARG_SOURCES)
    if(NOT IS_ABSOLUTE ${source})
      list(APPEND files ${CMAKE_CURRENT_SOURCE_DIR}/${source})
      string(REGEX REPLACE "\\.cpp$" ".h" header ${CMAKE_CURRENT_SOURCE_DIR}/${source})
      if(source MATCHES "\\.cpp$" AND EXISTS ${header})
        list(APPEND files ${header})
      endif()
    endif()
  endforeach()
  set_target_properties(${name} PROPERTIES VIREO_FILES "${files}" VIREO_LINK "${ARG_LINK}")
  set_property(GLOBAL APPEND PROPERTY VIREO_TARGETS ${name})
endfunction()

# vireo_test(NAME [LONG] SOURCES ... LINK ...): a room's part of a test program, each of whose cases is
# known to ctest; small rooms of a floor share a program by naming the same. LONG ones begin first. What
# they test is compiled as shipped, the tests themselves without optimisation and with the heavy headers
# of tests/support compiled before.
function(vireo_test name)
  _vireo_test(${name} tests_headers ${ARGN})
endfunction()

# vireo_form_test(NAME [LONG] SOURCES ... LINK ...): the same for tests that need the desktop's toolkit.
function(vireo_form_test name)
  _vireo_test(${name} form_tests_headers ${ARGN})
endfunction()

function(_vireo_test name headers)
  cmake_parse_arguments(ARG "LONG" "" "SOURCES;LINK" ${ARGN})
  if(NOT TARGET ${name})
    _vireo_test_program(${name} ${headers} "${ARG_LONG}")
  endif()
  list(TRANSFORM ARG_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  target_sources(${name} PRIVATE ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LINK})
endfunction()

function(_vireo_test_program name headers long)
  add_executable(${name})
  target_link_libraries(${name} PRIVATE vireo_flags GTest::gmock GTest::gtest_main)
  if(headers STREQUAL "form_tests_headers")
    target_sources(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests/support/qtmain.cpp)
    target_link_libraries(${name} PRIVATE platform_forms qt_test)
  endif()
  target_compile_definitions(${name} PRIVATE VIREO_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
  target_compile_options(${name} PRIVATE ${VIREO_TEST_OPTIONS})
  target_precompile_headers(${name} REUSE_FROM ${headers})
  set(environment "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8")
  set(cost 0)
  if(long)
    set(cost 60)
  endif()
  if(VIREO_SANITIZE)
    # To start a sanitized program takes longer than most tests: all of a program run in one process.
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES TIMEOUT 900 COST ${cost} ENVIRONMENT "${environment}")
  else()
    target_link_options(${name} PRIVATE -fuse-ld=gold)  # in a fifth of the time
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST
      PROPERTIES TIMEOUT 120 COST ${cost} ENVIRONMENT "${environment}")
  endif()
endfunction()

set(VIREO_TEST_OPTIONS -O0 -fPIC -fpch-preprocess)

# vireo_test_headers(NAME HEADERS ... LINK ...): headers compiled once for many test programs.
function(vireo_test_headers name)
  cmake_parse_arguments(ARG "" "" "HEADERS;LINK" ${ARGN})
  add_library(${name} OBJECT ${CMAKE_SOURCE_DIR}/tests/support/headers.cpp)
  target_link_libraries(${name} PRIVATE ${ARG_LINK} vireo_flags GTest::gmock)
  target_compile_options(${name} PRIVATE ${VIREO_TEST_OPTIONS})
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

# Looks at every file of src/ with cmake/CheckFloors.cmake; what it finds fails the build.
function(vireo_check_floors)
  get_property(targets GLOBAL PROPERTY VIREO_TARGETS)
  set(table "")
  foreach(target IN LISTS targets)
    get_target_property(files ${target} VIREO_FILES)
    get_target_property(link ${target} VIREO_LINK)
    string(REPLACE ";" "," files "${files}")
    string(REPLACE ";" "," link "${link}")
    string(APPEND table "${target}|${link}|${files}\n")
  endforeach()
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/floors.txt CONTENT "${table}")
  file(GLOB_RECURSE inputs CONFIGURE_DEPENDS
    ${CMAKE_SOURCE_DIR}/src/*.h ${CMAKE_SOURCE_DIR}/src/*.cpp ${CMAKE_SOURCE_DIR}/src/*.ui)
  set(check ${CMAKE_SOURCE_DIR}/cmake/CheckFloors.cmake)
  add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/floors.stamp
    COMMAND ${CMAKE_COMMAND} -DTABLE=${CMAKE_BINARY_DIR}/floors.txt -DROOT=${CMAKE_SOURCE_DIR}/src
            -P ${check}
    COMMAND ${CMAKE_COMMAND} -E touch ${CMAKE_BINARY_DIR}/floors.stamp
    DEPENDS ${inputs} ${check} ${CMAKE_BINARY_DIR}/floors.txt
    COMMENT "Checking that every include goes downwards" VERBATIM)
  add_custom_target(floors ALL DEPENDS ${CMAKE_BINARY_DIR}/floors.stamp)
endfunction()
