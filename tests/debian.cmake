# What cpack makes for Debian of any build: each package holds the files that it is to hold, no header but those of
# the library's folder, and needs what it is to need. (scripts/package installs them, too.)
#   cmake -D BUILD=<build folder> -D WORK=<folder> -D VERSION=<of convfile> -P debian.cmake
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_CPACK_COMMAND} --config ${BUILD}/CPackConfig.cmake -B ${WORK}
  -D CPACK_DEBIAN_COMPRESSION_TYPE=none
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)

set(found)
set(headers 0)
foreach(package IN ITEMS convfile libconvfile-dev)
  file(GLOB file ${WORK}/${package}_${VERSION}-1_*.deb)
  execute_process(COMMAND dpkg-deb --fsys-tarfile ${file} COMMAND tar -t
    OUTPUT_VARIABLE names COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]*[^/\n]\n" names "${names}") # folders end in a slash
  foreach(name IN LISTS names)
    if(name MATCHES "^\\./usr/include/convfile/[a-z]+/[A-Za-z0-9]+\\.h\n$")
      math(EXPR headers "${headers} + 1")
      continue()
    endif()
    # Libraries lie in a folder of the machine's where the build is for /usr; one has the version in its name,
    # and the targets of CMake the kind of build.
    string(REGEX REPLACE "/lib/[a-z0-9_]+-linux-gnu[a-z0-9]*/" "/lib/" name "${name}")
    string(REPLACE ".so.${VERSION}" ".so.VERSION" name "${name}")
    string(REGEX REPLACE "-targets-[a-z]+\\." "-targets-BUILD." name "${name}")
    list(APPEND found "${package} ${name}")
  endforeach()
  execute_process(COMMAND dpkg-deb --field ${file} Depends
    OUTPUT_VARIABLE needs_${package} COMMAND_ERROR_IS_FATAL ANY)
endforeach()

list(SORT found)
list(JOIN found "" found)
file(WRITE ${WORK}/files.txt "${found}")
execute_process(COMMAND diff -u ${CMAKE_CURRENT_LIST_DIR}/package/debian.txt ${WORK}/files.txt
  COMMAND_ERROR_IS_FATAL ANY)
if(headers LESS 50)
  message(SEND_ERROR "Only ${headers} headers")
endif()
foreach(need IN ITEMS libc6 libstdc\\+\\+6 ${DATABASE_LIBRARY})
  if(NOT needs_convfile MATCHES "(^| )${need} ")
    message(SEND_ERROR "convfile needs ${needs_convfile}, but not ${need}")
  endif()
endforeach()
if(NOT needs_libconvfile-dev STREQUAL "convfile (= ${VERSION}-1)\n")
  message(SEND_ERROR "libconvfile-dev needs ${needs_libconvfile-dev}")
endif()
