# What every target of the project is built with.

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release)
endif()

option(CONVFILE_LTO "Optimise across sources (gcc)" OFF)
set(CONVFILE_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them")
option(CONVFILE_PRECOMPILE "Precompile the standard library's headers: faster, but hides that one is not included" OFF)
# A compiler cache keeps nothing that uses a precompiled header: with one it costs less without.
if(CMAKE_CXX_COMPILER_LAUNCHER)
  set(CONVFILE_PRECOMPILE OFF)
endif()

# On Windows a program finds its DLLs in its own folder, so both are runtime output there.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)

if(CONVFILE_WEB) # a module lies where it lies
  set(CONVFILE_POSITION_INDEPENDENT OFF)
else()
  set(CONVFILE_POSITION_INDEPENDENT ON)
endif()

function(convfile_settings target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ${CONVFILE_POSITION_INDEPENDENT}
    # sources in one piece are included on purpose: clang-tidy sees them so, too
    UNITY_BUILD_CODE_BEFORE_INCLUDE "// NOLINTNEXTLINE(bugprone-suspicious-include)")
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
  if(WIN32)
    set_target_properties(${target} PROPERTIES PREFIX "") # convfile.dll, not libconvfile.dll
    # <windows.h> has macros of our names (AddJob, min, max).
    target_compile_definitions(${target} PRIVATE WIN32_LEAN_AND_MEAN NOMINMAX)
  endif()
  # No fused multiply-add: every machine gives the same digits.
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -ffp-contract=off
    # The converters are exported classes; their own operations may still call each other directly.
    $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>
    # The field book is the host's: that which only counts, the one in sight, is no likely guess.
    $<$<CXX_COMPILER_ID:GNU>:-fno-devirtualize-speculatively>
    # GCC 12 sees overlaps in std::string's operator+ that are not there (its bug 105651).
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    # Sources in one piece are included, but no header: what is nobody else's may be part of what is theirs.
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<BOOL:${CMAKE_UNITY_BUILD}>>:-Wno-subobject-linkage>
    $<$<BOOL:${CONVFILE_WERROR}>:-Werror>)
  if(CONVFILE_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${CONVFILE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
      $<$<CXX_COMPILER_ID:Clang>:-fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/cmake/sanitizer-ignore.txt>)
    target_link_options(${target} PRIVATE -fsanitize=${CONVFILE_SANITIZE})
  endif()
  get_target_property(type ${target} TYPE)
  if(CONVFILE_PRECOMPILE AND NOT type STREQUAL EXECUTABLE AND NOT target STREQUAL convfile_precompiled)
    target_precompile_headers(${target} REUSE_FROM convfile_precompiled)
  endif()
endfunction()

# Reading them is half of what a source costs to compile. They are compiled once, for all that is no program of its own.
if(CONVFILE_PRECOMPILE)
  set(headers algorithm array charconv cmath cstdint cstring functional limits map memory optional ostream span string
    string_view unordered_map utility vector)
  if(NOT CONVFILE_WEB)
    list(APPEND headers chrono filesystem fstream iostream sstream)
  endif()
  list(TRANSFORM headers REPLACE "(.+)" "<\\1>")
  set(source ${PROJECT_BINARY_DIR}/precompiled.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "")
  add_library(convfile_precompiled OBJECT ${source})
  target_precompile_headers(convfile_precompiled PRIVATE ${headers})
  convfile_settings(convfile_precompiled)
endif()

# A folder of the library: convfile_FOLDER, built into the library, on top of the parts that it LINKS.
function(convfile_part folder)
  cmake_parse_arguments(part "" "" "LINKS;SOURCES" ${ARGN})
  add_library(convfile_${folder} OBJECT ${part_SOURCES})
  convfile_settings(convfile_${folder})
  target_compile_definitions(convfile_${folder} PRIVATE CONVFILE_BUILD)
  list(TRANSFORM part_LINKS PREPEND convfile_)
  target_link_libraries(convfile_${folder} PUBLIC ${part_LINKS})
  set_property(GLOBAL APPEND PROPERTY CONVFILE_PARTS convfile_${folder})
endfunction()

# What is worth optimising across its sources: the library and what is linked into it. (Programs do without: the sources
# of a folder are one piece where speed counts.) An archive that the tests link, too, keeps ordinary code beside it, so
# that these link fast.
function(convfile_optimise_across)
  if(CONVFILE_LTO)
    foreach(target IN LISTS ARGN)
      get_target_property(type ${target} TYPE)
      target_compile_options(${target} PRIVATE -flto=auto
        $<$<STREQUAL:${type},STATIC_LIBRARY>:-ffat-lto-objects>)
      target_link_options(${target} PRIVATE -flto=auto)
    endforeach()
  endif()
endfunction()
