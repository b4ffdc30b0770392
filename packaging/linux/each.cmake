# Read by cpack once for each kind of package.
if(CPACK_GENERATOR STREQUAL "TGZ")
  # An archive is unpacked anywhere, so it has one folder, named as it is, and what would be in /usr below.
  set(CPACK_PACKAGING_INSTALL_PREFIX /)
  set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
endif()
