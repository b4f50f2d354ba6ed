# The .deb packages: the component runtime is convfile, the component development libconvfile-dev. What lies in
# share/doc is what Debian wants of a package, and useful elsewhere, too.
set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "converter of surveying instruments' files into field books")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME convfile)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION science)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "\
Turns what surveyors download from their total stations and field controllers
into a field book: jobs, stations, observed points; and that into tables for
spreadsheets, JSON and drawings for CAD. Some thirty formats are read, and
every file tells what became of each of its lines.

The package holds the program and the library it is made of.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libconvfile-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "convfile (= ${PROJECT_VERSION}-1)")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "\
Headers, static libraries, and packages for CMake and pkg-config, to use the
library of convfile in programs with a field book of their own.")

# What the programs need of other packages is found in them; hosts' packages learn from shlibs what they need of this
# one.
find_program(CONVFILE_SHLIBDEPS dpkg-shlibdeps)
if(CONVFILE_SHLIBDEPS)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
endif()
set(folder ${PROJECT_BINARY_DIR}/package)
file(CONFIGURE OUTPUT ${folder}/shlibs
  CONTENT "libconvfile ${PROJECT_VERSION_MAJOR} convfile (>= ${PROJECT_VERSION})\n")
file(CONFIGURE OUTPUT ${folder}/triggers CONTENT "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${folder}/shlibs ${folder}/triggers)

set(documents ${CMAKE_INSTALL_DATAROOTDIR}/doc)
install(FILES docs/formats.md docs/outputs.md DESTINATION ${documents}/convfile COMPONENT runtime)
install(DIRECTORY docs/pictures DESTINATION ${documents}/convfile COMPONENT runtime
  FILES_MATCHING PATTERN *.svg) # those of the documents that come along
install(DIRECTORY samples/ DESTINATION ${documents}/convfile/examples COMPONENT runtime)
install(FILES docs/embedding.md DESTINATION ${documents}/libconvfile-dev COMPONENT development)
install(DIRECTORY examples DESTINATION ${documents}/libconvfile-dev COMPONENT development)

# Compressed as Debian wants it, without the time of day.
find_program(CONVFILE_GZIP gzip)
set(compress ${CONVFILE_GZIP} -9 --no-name --stdout)
if(CONVFILE_MANUAL AND CONVFILE_GZIP)
  add_custom_command(OUTPUT ${folder}/convfile.1.gz
    COMMAND ${compress} ${CONVFILE_MANUAL} > ${folder}/convfile.1.gz
    DEPENDS ${CONVFILE_MANUAL} VERBATIM)
  add_custom_target(convfile_manual_compressed ALL DEPENDS ${folder}/convfile.1.gz)
  install(FILES ${folder}/convfile.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT runtime)
endif()

# The changelog is also wanted in Debian's form: an entry for each version.
if(CONVFILE_GZIP)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS CHANGELOG.md)
  file(STRINGS CHANGELOG.md versions REGEX "^## \\[[0-9.]+\\] - ")
  set(entries)
  foreach(version IN LISTS versions)
    string(REGEX MATCH "\\[(.*)\\] - (.*)" version "${version}")
    set(VERSION ${CMAKE_MATCH_1})
    execute_process(COMMAND date --utc --rfc-email --date=${CMAKE_MATCH_2}
      OUTPUT_VARIABLE DATE OUTPUT_STRIP_TRAILING_WHITESPACE)
    string(APPEND entries "convfile (${VERSION}-1) unstable; urgency=medium\n\n"
      "  * Version ${VERSION}: see changelog.gz.\n\n -- ${CONVFILE_MAINTAINER}  ${DATE}\n\n")
  endforeach()
  file(CONFIGURE OUTPUT ${folder}/changelog.Debian CONTENT "${entries}")
  execute_process(COMMAND ${compress} ${folder}/changelog.Debian OUTPUT_FILE ${folder}/changelog.Debian.gz)
  execute_process(COMMAND ${compress} ${PROJECT_SOURCE_DIR}/CHANGELOG.md OUTPUT_FILE ${folder}/changelog.gz)
endif()
configure_file(packaging/debian/copyright.in ${folder}/copyright @ONLY)

foreach(pair IN ITEMS runtime=convfile development=libconvfile-dev)
  string(REGEX MATCH "^(.*)=(.*)$" pair ${pair})
  install(FILES ${folder}/copyright ${folder}/changelog.gz ${folder}/changelog.Debian.gz
    DESTINATION ${documents}/${CMAKE_MATCH_2} COMPONENT ${CMAKE_MATCH_1} OPTIONAL)
endforeach()
