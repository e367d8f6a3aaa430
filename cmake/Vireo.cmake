# The house rules of a build target: one core and one forms library for each folder, warnings as
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
      ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${CCACHE})
endif()

option(VIREO_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)

add_library(vireo_flags INTERFACE)
target_compile_options(vireo_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Werror
  # g++ 12 warns wrongly about assigning a literal to a string under -O3.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
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

define_property(GLOBAL PROPERTY VIREO_ROOMS)

# vireo_core(NAME FOLDER folder SOURCES ... LINK ...): a library without a widget.
function(vireo_core name)
  _vireo_room(${name} ${ARGN})
endfunction()

# vireo_forms(NAME FOLDER folder SOURCES ... UI ... LINK ...): a library of forms or controls.
function(vireo_forms name)
  cmake_parse_arguments(ARG "" "FOLDER" "SOURCES;UI;LINK" ${ARGN})
  set(ui)
  if(ARG_UI)
    qt_wrap_ui(ui ${ARG_UI})
  endif()
  _vireo_room(${name} FOLDER ${ARG_FOLDER} SOURCES ${ARG_SOURCES} ${ui} LINK ${ARG_LINK} Qt6::Widgets)
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
endfunction()

function(_vireo_room name)
  cmake_parse_arguments(ARG "" "FOLDER" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE vireo_flags)
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  set_target_properties(${name} PROPERTIES VIREO_FOLDER "${ARG_FOLDER}" VIREO_LINK "${ARG_LINK}")
  set_property(GLOBAL APPEND PROPERTY VIREO_ROOMS ${name})
endfunction()

# vireo_headers(NAME FOLDER folder LINK ...): a room of headers alone.
function(vireo_headers name)
  cmake_parse_arguments(ARG "" "FOLDER" "LINK" ${ARGN})
  add_library(${name} INTERFACE)
  target_link_libraries(${name} INTERFACE ${ARG_LINK})
  target_include_directories(${name} INTERFACE ${CMAKE_SOURCE_DIR}/src)
  set_target_properties(${name} PROPERTIES VIREO_FOLDER "${ARG_FOLDER}" VIREO_LINK "${ARG_LINK}")
  set_property(GLOBAL APPEND PROPERTY VIREO_ROOMS ${name})
endfunction()

# vireo_program(NAME SOURCES ... LINK ...)
function(vireo_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LINK} vireo_flags)
endfunction()

# vireo_test(NAME SOURCES ... LINK ...): one test program, each of its cases known to ctest.
function(vireo_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LINK} vireo_flags GTest::gmock GTest::gtest_main)
  target_compile_definitions(${name} PRIVATE VIREO_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 120 ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8")
endfunction()

# Compares every include of a room with what the room links; an include upwards fails the build.
function(vireo_check_floors)
  get_property(rooms GLOBAL PROPERTY VIREO_ROOMS)
  set(table "")
  set(inputs "")
  foreach(room IN LISTS rooms)
    get_target_property(folder ${room} VIREO_FOLDER)
    get_target_property(link ${room} VIREO_LINK)
    get_target_property(sources ${room} SOURCES)
    if(NOT sources)
      set(sources)
    endif()
    get_target_property(dir ${room} SOURCE_DIR)
    list(TRANSFORM link REPLACE ";" ",")
    string(REPLACE ";" "," link "${link}")
    set(files)
    foreach(source IN LISTS sources)
      if(NOT IS_ABSOLUTE ${source})
        list(APPEND files ${dir}/${source})
        list(APPEND inputs ${dir}/${source})
        string(REGEX REPLACE "\\.cpp$" ".h" header ${dir}/${source})
        if(NOT header STREQUAL "${dir}/${source}" AND EXISTS ${header})
          list(APPEND files ${header})
          list(APPEND inputs ${header})
        endif()
      endif()
    endforeach()
    string(REPLACE ";" "," files "${files}")
    string(APPEND table "${room}|${folder}|${link}|${files}\n")
  endforeach()
  file(WRITE ${CMAKE_BINARY_DIR}/floors.txt "${table}")
  add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/floors.stamp
    COMMAND ${CMAKE_COMMAND} -DTABLE=${CMAKE_BINARY_DIR}/floors.txt -DROOT=${CMAKE_SOURCE_DIR}/src
            -P ${CMAKE_SOURCE_DIR}/cmake/CheckFloors.cmake
    COMMAND ${CMAKE_COMMAND} -E touch ${CMAKE_BINARY_DIR}/floors.stamp
    DEPENDS ${inputs} ${CMAKE_SOURCE_DIR}/cmake/CheckFloors.cmake ${CMAKE_BINARY_DIR}/floors.txt
    COMMENT "Checking that every include goes downwards" VERBATIM)
  add_custom_target(floors ALL DEPENDS ${CMAKE_BINARY_DIR}/floors.stamp)
endfunction()
