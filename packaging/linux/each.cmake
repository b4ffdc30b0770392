# Read by cpack once for each kind of package.
if(CPACK_GENERATOR STREQUAL "TGZ")
  # An archive may be unpacked anywhere, so it has one folder of its own name, with what would be in /usr.
  set(CPACK_PACKAGING_INSTALL_PREFIX /)
  set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
endif()
