# What find_package(convfile) reads: the library needs nothing that a host would have to find.
include(${CMAKE_CURRENT_LIST_DIR}/convfile-targets.cmake)
