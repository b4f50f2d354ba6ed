# The libraries of Debian that are headers alone. They serve every platform, so they are looked for on the
# machine that builds, also where it builds for another one; that one's compiler sees nothing else of the
# machine's headers.
function(convfile_header_library target folder header)
  find_path(CONVFILE_${folder}_INCLUDE ${folder}/${header} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  set(include ${CONVFILE_${folder}_INCLUDE})
  if(CMAKE_CROSSCOMPILING)
    set(include ${PROJECT_BINARY_DIR}/include)
    file(MAKE_DIRECTORY ${include})
    file(CREATE_LINK ${CONVFILE_${folder}_INCLUDE}/${folder} ${include}/${folder} SYMBOLIC)
  endif()
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${include})
endfunction()

if(CONVFILE_WEB)
  convfile_header_library(convfile_fast_float fast_float fast_float.h)
else()
  convfile_header_library(convfile_cli11 CLI CLI.hpp)
  convfile_header_library(convfile_rapidjson rapidjson writer.h)
endif()
