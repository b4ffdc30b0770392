# A list of what is linked into each program, in the form of CycloneDX: PROGRAM.cdx.json next to it. CMake knows the libraries and their versions; which of
# the shared ones the linker kept is read from the finished program. The compiler's own libraries and the system's C library are not in it.

# velkaro_describe_library(LIBRARY NAME VERSION LICENCE): LIBRARY as it is linked (a target, a file or a framework), LICENCE by its SPDX name or empty.
function(velkaro_describe_library library name version licence)
  set(location ${library})
  if(TARGET ${library})
    get_target_property(kind ${library} TYPE)
    if(kind STREQUAL "INTERFACE_LIBRARY")
      set(location)
    else()
      get_target_property(location ${library} LOCATION)
    endif()
  endif()
  set_property(GLOBAL PROPERTY "velkaro_library_${library}" "${name}|${version}|${licence}|${location}")
endfunction()

# What one of our targets links directly.
function(velkaro_links_of target result)
  set(links)
  foreach(property LINK_LIBRARIES INTERFACE_LINK_LIBRARIES)
    get_target_property(told ${target} ${property})
    if(told)
      list(APPEND links ${told})
    endif()
  endforeach()
  list(TRANSFORM links REPLACE "^\\$<LINK_ONLY:(.*)>$" "\\1")
  set(${result} ${links} PARENT_SCOPE)
endfunction()

function(velkaro_is_our_own library result)
  set(own FALSE)
  if(TARGET ${library})
    get_target_property(imported ${library} IMPORTED)
    if(NOT imported)
      set(own TRUE)
    endif()
  endif()
  set(${result} ${own} PARENT_SCOPE)
endfunction()

# Everything that a target links, also through our own targets, as described with velkaro_describe_library.
function(velkaro_described_libraries target result)
  set(waiting ${target})
  set(seen)
  set(described)
  while(waiting)
    list(POP_FRONT waiting library)
    if(library IN_LIST seen)
      continue()
    endif()
    list(APPEND seen ${library})
    get_property(description GLOBAL PROPERTY "velkaro_library_${library}")
    velkaro_is_our_own(${library} own)
    if(description)
      list(APPEND described ${description})
    elseif(own)
      velkaro_links_of(${library} links)
      list(APPEND waiting ${links})
    else()
      message(FATAL_ERROR "${target} links ${library}, which velkaro_describe_library does not describe")
    endif()
  endwhile()
  list(SORT described)
  list(REMOVE_DUPLICATES described)
  set(${result} ${described} PARENT_SCOPE)
endfunction()

# Call it once the program links everything it needs.
function(velkaro_sbom program)
  velkaro_described_libraries(${program} libraries)
  add_custom_command(TARGET ${program} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -D PROGRAM=$<TARGET_FILE:${program}> -D NAME=${program} -D VERSION=${PROJECT_VERSION} -D "LIBRARIES=${libraries}"
      -D OUTPUT=${PROJECT_BINARY_DIR}/${program}.cdx.json -P ${PROJECT_SOURCE_DIR}/cmake/write_sbom.cmake
    BYPRODUCTS ${PROJECT_BINARY_DIR}/${program}.cdx.json
    VERBATIM)
endfunction()
