# Packages of the reader for Linux: `cpack` in the build folder, or better packaging/linux/package, which also makes them reproducible.
# The scanner is for Macs; packaging/macos has its package.
if(APPLE OR NOT TARGET inv)
  return()
endif()

# The owner has yet to choose a licence. Only this line says so, and all packages repeat it.
set(VELKARO_LICENSE "proprietary, see the owner")
set(VELKARO_CONTACT "Velkaro <owner@velkaro.invalid>" CACHE STRING "Who answers for the packages: name and address")

set(CPACK_GENERATOR DEB RPM TGZ)
set(CPACK_PACKAGE_NAME velkaro-inv)
set(CPACK_PACKAGE_FILE_NAME velkaro-inv-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_VENDOR Velkaro)
set(CPACK_PACKAGE_CONTACT ${VELKARO_CONTACT})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "reader of the Velkaro scanner's inventory files")
set(CPACK_PACKAGE_DESCRIPTION
"The scanner saves what it finds about a Mac in an .inv file. The program inv
shows such files, checks them, compares two of them, redacts them, and exports
them as JSON, CSV, HTML or an SQLite database.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL reader fleet documentation)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_STRIP_FILES TRUE)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/packaging/linux/each.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/linux/debian.cmake ${PROJECT_SOURCE_DIR}/packaging/linux/dates.cmake)
set(CPACK_VELKARO_LICENSE ${VELKARO_LICENSE})

set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

set(CPACK_RPM_COMPONENT_INSTALL ON)
set(CPACK_RPM_FILE_NAME RPM-DEFAULT)
set(CPACK_RPM_PACKAGE_LICENSE ${VELKARO_LICENSE})
# These folders belong to other packages.
set(CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION
  /usr/share/man /usr/share/man/man1 /usr/share/bash-completion /usr/share/bash-completion/completions /usr/share/zsh
  /usr/share/zsh/site-functions /usr/share/fish /usr/share/fish/vendor_completions.d /usr/share/doc)
set(CPACK_RPM_SPEC_MORE_DEFINE
"%define _build_id_links none
%define use_source_date_epoch_as_buildtime 1
%define clamp_mtime_to_source_date_epoch 1
%define _buildhost reproducible")

include(CPack)
