# The installed package: find_package(convfile) gives
#   convfile::headers    what a host includes
#   convfile::convfile   the library; it takes the host's own convfile_host, or that of
#   convfile::memory     the host in memory
#   convfile::routines   texts, numbers, angles, the text-file reader: for formats of a host's own
#   convfile::export     plan, tables and drawings of a field book
# and pkg-config the same by the names convfile and convfile-memory.
#
# What a program needs to run is the component runtime, what it takes to build one the component development.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(folder ${CMAKE_INSTALL_INCLUDEDIR}/convfile)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/convfile)

target_include_directories(convfile_headers INTERFACE $<INSTALL_INTERFACE:${folder}>)
foreach(headers IN ITEMS host routines framework converters cadastral entry memory export)
  install(DIRECTORY ${headers} DESTINATION ${folder} COMPONENT development FILES_MATCHING PATTERN *.h)
endforeach()
install(FILES database/ConvFileTLSV.h database/DBDataProviderLcm.h
  DESTINATION ${folder}/database COMPONENT development)

# The convfile_host of the host in memory is in a folder of its own, where no host gets it by accident.
set(memory_folder ${CMAKE_INSTALL_LIBDIR}/convfile)
if(NOT WIN32)
  if(CMAKE_INSTALL_PREFIX STREQUAL /usr) # it stays there, and the system searches the library's folder by itself
    set(search_path /usr/${memory_folder})
  else()
    file(RELATIVE_PATH libraries /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
    set(search_path $ORIGIN/${libraries} $ORIGIN/${libraries}/convfile)
  endif()
  set_target_properties(convfile_program PROPERTIES INSTALL_RPATH "${search_path}")
endif()
set_target_properties(convfile_headers PROPERTIES EXPORT_NAME headers)
set_target_properties(convfile_memory PROPERTIES EXPORT_NAME memory)
set_target_properties(convfile_host PROPERTIES EXPORT_NAME memory_host)
set_target_properties(convfile_routines PROPERTIES EXPORT_NAME routines)
set_target_properties(convfile_export PROPERTIES EXPORT_NAME export)

install(TARGETS convfile convfile_headers convfile_memory convfile_routines convfile_export
  EXPORT convfile-targets
  RUNTIME COMPONENT runtime
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(TARGETS convfile_host EXPORT convfile-targets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  LIBRARY DESTINATION ${memory_folder} COMPONENT runtime
  ARCHIVE DESTINATION ${memory_folder} COMPONENT development)
install(TARGETS convfile_program COMPONENT runtime)
# What the objects hold for optimising across sources serves only the very compiler that wrote it, and stops any
# other release of it: the installed archives have ordinary code alone, and no word of who compiled it.
if(CONVFILE_LTO)
  foreach(target IN ITEMS convfile_memory convfile_routines convfile_export)
    set(archive "\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/lib${target}.a")
    install(CODE "execute_process(COMMAND ${CMAKE_OBJCOPY} -D -R .gnu.lto_* -R .gnu.debuglto_*
      -N __gnu_lto_v1 -R .comment -R .note \"${archive}\" COMMAND_ERROR_IS_FATAL ANY)"
      COMPONENT development)
  endforeach()
endif()
install(EXPORT convfile-targets NAMESPACE convfile:: DESTINATION ${package} COMPONENT development)

write_basic_package_version_file(${PROJECT_BINARY_DIR}/convfile-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES cmake/convfile-config.cmake ${PROJECT_BINARY_DIR}/convfile-config-version.cmake
  DESTINATION ${package} COMPONENT development)

if(NOT WIN32)
  set(pkgconfig ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  file(RELATIVE_PATH root /${pkgconfig} /)
  string(REGEX REPLACE "/$" "" root ${root})
  foreach(name IN ITEMS convfile convfile-memory)
    configure_file(cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc
      DESTINATION ${pkgconfig} COMPONENT development)
  endforeach()
endif()
