# The manual page names every option that the program's help names, with its text, and every format; and the
# typesetter, where it is there, has nothing to say of it.
#   cmake -D PROGRAM=<program> -D PAGE=<manual page> -P manual.cmake
cmake_minimum_required(VERSION 3.25)

file(READ ${PAGE} page)
string(REGEX REPLACE "\\\\f[A-Z]" "" page "${page}") # bold, italic, roman
string(REPLACE "\\-" "-" page "${page}")
string(REPLACE ";" "," page "${page}") # a list would end there

function(expect_in_page what)
  string(FIND "${page}" "${what}" place)
  if(place EQUAL -1)
    message(SEND_ERROR "${PAGE} does not have: ${what}")
  endif()
endfunction()

# An option stands at the beginning of its line, its text behind it or on the next one.
execute_process(COMMAND ${PROGRAM} --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE ";" "," help "${help}")
string(REGEX MATCHALL "\n  -[^ ]+ [^\n]*(\n   +)?[^\n]+" options "${help}")
list(LENGTH options count)
if(count LESS 10)
  message(FATAL_ERROR "Only ${count} options were found in\n${help}")
endif()
foreach(option IN LISTS options)
  string(REGEX MATCH "-[^ ]+" names "${option}")
  string(REPLACE "," ", " names "${names}")
  expect_in_page("\n${names}")
  string(REGEX REPLACE ".*   +" "" text "${option}")
  expect_in_page("\n${text}\n")
endforeach()

execute_process(COMMAND ${PROGRAM} formats OUTPUT_VARIABLE formats COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "\n[a-z0-9-]+ " names "${formats}")
list(LENGTH names count)
if(count LESS 20)
  message(FATAL_ERROR "Only ${count} formats were found in\n${formats}")
endif()
foreach(name IN LISTS names)
  string(STRIP "${name}" name)
  expect_in_page(".TP\n${name}\n")
endforeach()

find_program(groff groff)
if(groff)
  execute_process(COMMAND ${groff} -man -ww -Tutf8 -z ${PAGE}
    ERROR_VARIABLE complaints COMMAND_ERROR_IS_FATAL ANY)
  if(complaints)
    message(SEND_ERROR "${complaints}")
  endif()
endif()
