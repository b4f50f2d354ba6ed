# Builds the page's module: WebAssembly with clang 19 of Debian. It has no threads, no files, no exceptions.

set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR wasm32)

set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_CXX_COMPILER_TARGET wasm32-wasi)
set(CMAKE_AR ar)
set(CMAKE_RANLIB true)

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_CXX_FLAGS_INIT -fno-exceptions)

# What is built is the page, not the library and the program.
set(CONVFILE_WEB ON)
