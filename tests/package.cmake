# The package as its users take it: installs it into a folder of its own, builds against that and nothing
# else the example host, which has a convfile_host of its own, and a program on the host in memory, and
# converts a file with each.
#   cmake -D BUILD=<build folder> -D WORK=<folder> -D TOOLCHAIN=<file> -D COMPILER=<C++ compiler>
#         -D EMULATOR=<program> -P package.cmake
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
function(build folder name)
  run(${CMAKE_COMMAND} -S ${folder} -B ${WORK}/${name} -G Ninja ${options}
      -DCMAKE_BUILD_TYPE=Release -Dconvfile_DIR=${WORK}/package/lib/cmake/convfile
      "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror")
  run(${CMAKE_COMMAND} --build ${WORK}/${name})
endfunction()
build(${source}/examples/host host)
build(${source}/tests/package memory)

run(${EMULATOR} ${WORK}/host/example_host${exe} ${source}/samples/day.gsi 1)
file(READ ${CMAKE_CURRENT_LIST_DIR}/package/day.txt expected)
string(REPLACE "\r\n" "\n" output "${output}")
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "The example host gives\n${output}\nnot\n${expected}")
endif()

run(${EMULATOR} ${WORK}/memory/memory_user${exe} ${source}/samples/day.gsi)
if(NOT output MATCHES "^16 points, 1 message")
  message(FATAL_ERROR "The program on the host in memory gives\n${output}")
endif()

run(${EMULATOR} ${WORK}/package/bin/convfile${exe} --to summary ${source}/samples/day.gsi)
if(NOT output MATCHES "^day.gsi: 1 job, 4 stations, 16 points")
  message(FATAL_ERROR "The installed program gives\n${output}")
endif()
