# The .zip: unpacked anywhere, it works from there.
set(CPACK_GENERATOR ZIP)
set(CPACK_SYSTEM_NAME win64)

install(FILES docs/formats.md docs/outputs.md docs/embedding.md CHANGELOG.md
  DESTINATION docs COMPONENT runtime)
install(DIRECTORY docs/pictures DESTINATION docs COMPONENT runtime FILES_MATCHING PATTERN *.svg)
install(DIRECTORY samples DESTINATION . COMPONENT runtime)
install(DIRECTORY examples DESTINATION . COMPONENT development)
install(FILES LICENSE DESTINATION . COMPONENT runtime OPTIONAL)

# The page is built apart, before this is configured; where it is, it comes along.
set(page ${PROJECT_SOURCE_DIR}/build/web)
set(of_the_page)
set(PAGE_FOR_README)
if(EXISTS ${page})
  install(DIRECTORY ${page}/ DESTINATION page COMPONENT runtime)
  set(of_the_page
    page-libcxx=libc++-19-dev-wasm32 page-compiler-rt=libclang-rt-19-dev-wasm32 page-wasi-libc=wasi-libc)
  file(READ packaging/windows/page.txt PAGE_FOR_README)
  string(REPLACE "\n" "\r\n" PAGE_FOR_README "${PAGE_FOR_README}")
endif()
configure_file(packaging/windows/README.txt.in ${PROJECT_BINARY_DIR}/package/README.txt
  @ONLY NEWLINE_STYLE CRLF)
install(FILES ${PROJECT_BINARY_DIR}/package/README.txt DESTINATION . COMPONENT runtime)

# The licences of what is inside, as the Debian packages that it comes from have them.
configure_file(packaging/windows/licences.txt ${PROJECT_BINARY_DIR}/package/licences/README.txt
  @ONLY NEWLINE_STYLE CRLF)
install(FILES ${PROJECT_BINARY_DIR}/package/licences/README.txt DESTINATION licences COMPONENT runtime)
install(FILES /usr/share/common-licenses/GPL-3
  DESTINATION licences RENAME GPL-3.txt COMPONENT runtime OPTIONAL)
foreach(pair IN ITEMS gcc=gcc-mingw-w64-x86-64-posix-runtime mingw-w64=mingw-w64-x86-64-dev
    cli11=libcli11-dev fast_float=libfast-float-dev ${of_the_page})
  string(REGEX MATCH "^(.*)=(.*)$" pair ${pair})
  install(FILES /usr/share/doc/${CMAKE_MATCH_2}/copyright
    DESTINATION licences RENAME ${CMAKE_MATCH_1}.txt COMPONENT runtime OPTIONAL)
endforeach()
