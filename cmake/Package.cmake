# What packages hold beside what Install.cmake installs, and how cpack makes them: two of Debian's,
#   convfile           the program and the library
#   libconvfile-dev    what it takes to build hosts
# of the preset package (its folders are those of /usr), or one .zip with everything for Windows.
# scripts/package makes and tries them.

set(CONVFILE_MAINTAINER "convfile maintainers <maintainers@convfile.example>" CACHE STRING
  "Who answers for the packages")

set(CPACK_PACKAGE_NAME ${PROJECT_NAME})
set(CPACK_PACKAGE_VENDOR "The convfile maintainers")
set(CPACK_PACKAGE_CONTACT ${CONVFILE_MAINTAINER})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)

if(WIN32)
  include(${CMAKE_CURRENT_LIST_DIR}/PackageWindows.cmake)
else()
  include(${CMAKE_CURRENT_LIST_DIR}/PackageDebian.cmake)
endif()
include(CPack)
