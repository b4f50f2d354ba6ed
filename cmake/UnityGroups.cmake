# Where sources are compiled in one piece (CMAKE_UNITY_BUILD), two that name something of their own alike go into
# different pieces. Taken for a name of its own: a constant that no header has, a function, a struct. One that is overlooked
# is an error of the compiler, who says where.

function(convfile_constants out text)
  string(REGEX REPLACE "[^A-Za-z0-9_]+" " " text "${text}") # a bracket would hold a list together
  string(REGEX MATCHALL " k[A-Z][A-Za-z0-9]*" names "${text}")
  list(TRANSFORM names STRIP)
  list(REMOVE_DUPLICATES names)
  set(${out} "${names}" PARENT_SCOPE)
endfunction()

# convfile_own_names(OUT SOURCE KNOWN...): the names that a source has for itself.
function(convfile_own_names out source)
  file(READ ${source} text)
  string(REGEX REPLACE "//[^\n]*" "" text "${text}")
  convfile_constants(names "${text}")
  list(REMOVE_ITEM names ${ARGN} "")
  string(REGEX MATCHALL "[A-Za-z0-9_>*&] k[A-Z][A-Za-z0-9]*( =|{|[[])" declared "${text}") # a class may have one alike
  convfile_constants(declared "${declared}")
  list(APPEND names ${declared})
  string(REGEX MATCHALL "\n(struct|class|enum|enum class) [A-Za-z0-9]+" types "${text}")
  string(REGEX MATCHALL "\n[a-z][A-Za-z0-9_:<>&*, ]* [&*]?[A-Za-z0-9]+\\(" functions "${text}")
  list(TRANSFORM functions REPLACE "\\($" "")
  list(TRANSFORM functions REPLACE "^.*[ &*]" "")
  list(TRANSFORM types REPLACE "^.* " "")
  list(APPEND names ${types} ${functions})
  list(REMOVE_DUPLICATES names)
  list(REMOVE_ITEM names main "") # no two are in one program; convfile_in_pieces gives each a name of its own
  set(${out} "${names}" PARENT_SCOPE)
endfunction()

# convfile_unity_groups(TARGET MOST): at most so many sources go into one piece.
function(convfile_unity_groups target most)
  set(known)
  file(GLOB headers ${PROJECT_SOURCE_DIR}/*/*.h ${PROJECT_SOURCE_DIR}/*/*/*.h)
  foreach(header IN LISTS headers)
    file(READ ${header} text)
    convfile_constants(names "${text}")
    list(APPEND known ${names})
  endforeach()
  list(REMOVE_DUPLICATES known)

  set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
  get_target_property(sources ${target} SOURCES)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sources})
  set(count 0)
  foreach(source IN LISTS sources)
    get_filename_component(path ${source} ABSOLUTE)
    convfile_own_names(names ${path} ${known})
    set(group 0)
    while(group LESS count)
      set(others ${names})
      list(REMOVE_ITEM others ${names_of_${group}} "")
      if("${others}" STREQUAL "${names}" AND size_of_${group} LESS most) # none in common
        break()
      endif()
      math(EXPR group "${group} + 1")
    endwhile()
    if(group EQUAL count)
      math(EXPR count "${count} + 1")
      set(size_of_${group} 0)
    endif()
    math(EXPR size_of_${group} "${size_of_${group}} + 1")
    list(APPEND names_of_${group} ${names})
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${group})
  endforeach()
endfunction()

# convfile_in_pieces(NAME MOST TARGET...): a target of the sources of all of them, in pieces of at most so many. It is never
# built: what looks at sources finds the commands for its pieces where the compile commands are.
function(convfile_in_pieces name most)
  add_library(${name} OBJECT EXCLUDE_FROM_ALL)
  convfile_settings(${name})
  foreach(target IN LISTS ARGN)
    get_target_property(sources ${target} SOURCES)
    get_target_property(folder ${target} SOURCE_DIR)
    foreach(source IN LISTS sources)
      get_filename_component(source ${source} ABSOLUTE BASE_DIR ${folder})
      target_sources(${name} PRIVATE ${source})
    endforeach()
    foreach(property IN ITEMS INCLUDE_DIRECTORIES COMPILE_DEFINITIONS)
      set_property(TARGET ${name} APPEND PROPERTY ${property} $<TARGET_PROPERTY:${target},${property}>)
    endforeach()
  endforeach()
  get_target_property(before ${name} UNITY_BUILD_CODE_BEFORE_INCLUDE)
  set_target_properties(${name} PROPERTIES
    UNITY_BUILD ON
    UNITY_BUILD_UNIQUE_ID CONVFILE_SOURCE
    UNITY_BUILD_CODE_BEFORE_INCLUDE "#define main CONVFILE_SOURCE\n${before}")
  convfile_unity_groups(${name} ${most})
endfunction()
