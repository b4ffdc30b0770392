# Run after a program is linked: writes the list of its libraries, each of LIBRARIES being "NAME|VERSION|LICENCE|LOCATION".
cmake_minimum_required(VERSION 3.25)

file(GET_RUNTIME_DEPENDENCIES EXECUTABLES ${PROGRAM} RESOLVED_DEPENDENCIES_VAR found UNRESOLVED_DEPENDENCIES_VAR elsewhere)
foreach(file ${found} ${elsewhere})
  get_filename_component(stem ${file} NAME_WE)
  list(APPEND loaded ${stem})
endforeach()

# Whether a described library is in the program: every static one is, and so are the shared ones that it loads.
function(is_linked location result)
  get_filename_component(name "${location}" NAME)
  get_filename_component(stem "${location}" NAME_WE)
  set(linked TRUE)
  if(name MATCHES "\\.(so|dylib|tbd)(\\.|$)" AND NOT stem IN_LIST loaded)
    set(linked FALSE)
  endif()
  set(${result} ${linked} PARENT_SCOPE)
endfunction()

set(components)
set(references)
foreach(library ${LIBRARIES})
  string(REPLACE "|" ";" fields "${library}")
  list(GET fields 0 name)
  list(GET fields 1 version)
  list(GET fields 2 licence)
  list(GET fields 3 location)
  is_linked("${location}" linked)
  if(NOT linked OR "\"${name}\"" IN_LIST references)
    continue()
  endif()
  set(component "    {\n      \"type\": \"library\",\n      \"bom-ref\": \"${name}\",\n      \"name\": \"${name}\"")
  if(version)
    string(TOLOWER "pkg:generic/${name}@${version}" address)
    string(APPEND component ",\n      \"version\": \"${version}\",\n      \"purl\": \"${address}\"")
  endif()
  if(licence)
    string(APPEND component ",\n      \"licenses\": [{ \"license\": { \"id\": \"${licence}\" } }]")
  endif()
  list(APPEND components "${component}\n    }")
  list(APPEND references "\"${name}\"")
endforeach()
list(JOIN components ",\n" components)
list(JOIN references ", " references)

set(body "  \"version\": 1,
  \"metadata\": {
    \"component\": { \"type\": \"application\", \"bom-ref\": \"${NAME}\", \"name\": \"${NAME}\", \"version\": \"${VERSION}\" }
  },
  \"components\": [
${components}
  ],
  \"dependencies\": [
    { \"ref\": \"${NAME}\", \"dependsOn\": [${references}] }
  ]
}
")
# The serial number is derived from the content, so that the same program has the same list.
string(UUID number NAMESPACE 6ba7b811-9dad-11d1-80b4-00c04fd430c8 NAME "${body}" TYPE SHA1)
file(WRITE ${OUTPUT} "{
  \"$schema\": \"http://cyclonedx.org/schema/bom-1.6.schema.json\",
  \"bomFormat\": \"CycloneDX\",
  \"specVersion\": \"1.6\",
  \"serialNumber\": \"urn:uuid:${number}\",
${body}")
