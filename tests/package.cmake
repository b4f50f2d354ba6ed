# The package as its users take it: installs it into a folder of its own, builds against that and nothing
# else the example host, which has a convfile_host of its own, and programs on the host in memory, and
# converts a file with each. On Linux also by what pkg-config says.
#   cmake -D BUILD=<build folder> -D WORK=<folder> -D TOOLCHAIN=<file> -D COMPILER=<C++ compiler>
#         -D EMULATOR=<program> -P package.cmake
cmake_minimum_required(VERSION 3.25)

set(source ${CMAKE_CURRENT_LIST_DIR}/..)
set(exe)
set(options -DCMAKE_CXX_COMPILER=${COMPILER})
if(TOOLCHAIN)
  set(exe .exe)
  set(options --toolchain ${TOOLCHAIN})
endif()

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nends with ${status}:\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/package)

# What an installed header includes is installed, too.
set(include ${WORK}/package/include/convfile)
file(GLOB_RECURSE headers RELATIVE ${include} ${include}/*.h)
if(NOT "entry/ConvEntry.h" IN_LIST headers)
  message(FATAL_ERROR "no headers below ${include}: ${headers}")
endif()
foreach(header IN LISTS headers)
  file(STRINGS ${include}/${header} lines REGEX "^#include \"")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "^#include \"(.*)\".*" "\\1" included "${line}")
    if(NOT included IN_LIST headers)
      message(FATAL_ERROR "${header} includes ${included}, which is not installed")
    endif()
  endforeach()
endforeach()

# Nothing in it is for one release of the compiler alone.
file(GLOB archives ${WORK}/package/lib/*.a)
foreach(archive IN LISTS archives)
  file(STRINGS ${archive} bytecode REGEX "^\\.gnu\\.lto_" LIMIT_COUNT 1)
  if(bytecode)
    message(FATAL_ERROR "${archive} holds ${bytecode}")
  endif()
endforeach()

# Not optimised: each of them converts one small file.
function(build folder name)
  run(${CMAKE_COMMAND} -S ${folder} -B ${WORK}/${name} -G Ninja ${options}
      -DCMAKE_BUILD_TYPE= -Dconvfile_DIR=${WORK}/package/lib/cmake/convfile
      "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror")
  run(${CMAKE_COMMAND} --build ${WORK}/${name})
endfunction()
build(${source}/examples/host host)
build(${source}/tests/package memory)

# expect PATTERN PROGRAM ARGUMENT...: what the program prints.
function(expect pattern)
  run(${ARGN})
  if(NOT output MATCHES "${pattern}")
    message(FATAL_ERROR "${ARGN}\ngives\n${output}not\n${pattern}")
  endif()
endfunction()

run(${EMULATOR} ${WORK}/host/example_host${exe} ${source}/samples/day.gsi 1)
file(READ ${CMAKE_CURRENT_LIST_DIR}/package/day.txt expected)
string(REPLACE "\r\n" "\n" output "${output}")
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "The example host gives\n${output}\nnot\n${expected}")
endif()

set(day ${source}/samples/day.gsi)
set(memory_user "^16 points, 1 message")
expect("${memory_user}" ${EMULATOR} ${WORK}/memory/memory_user${exe} ${day})
expect("^A1 12.500\r?\nB2 7.125\r?\ngsi of [0-9]+ formats"
  ${EMULATOR} ${WORK}/memory/format_user${exe} ${CMAKE_CURRENT_LIST_DIR}/package/own.gsi)
expect("\nS1,0,0,0,.*\n1,10,0,0," ${EMULATOR} ${WORK}/memory/export_user${exe})
expect("^day.gsi: 1 job, 4 stations, 16 points"
  ${EMULATOR} ${WORK}/package/bin/convfile${exe} --to summary ${day})

if(NOT TOOLCHAIN)
  find_program(pkg_config pkg-config REQUIRED)
  set(ENV{PKG_CONFIG_PATH} ${WORK}/package/lib/pkgconfig)
  run(${pkg_config} --cflags --libs convfile-memory)
  separate_arguments(flags UNIX_COMMAND "${output}")
  run(${COMPILER} -std=c++20 ${CMAKE_CURRENT_LIST_DIR}/package/memory_user.cpp ${flags}
      -o ${WORK}/pkg_config_user)
  set(ENV{LD_LIBRARY_PATH} ${WORK}/package/lib:${WORK}/package/lib/convfile)
  expect("${memory_user}" ${WORK}/pkg_config_user ${day})
endif()
