# What Debian packages need in addition, applied to the staged files.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()
file(GLOB share ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share)
file(RENAME ${share}/zsh/site-functions ${share}/zsh/vendor-completions)

set(own ${share}/doc/${CPACK_PACKAGE_NAME})
string(TIMESTAMP day "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${own}/copyright "License: ${CPACK_VELKARO_LICENSE}\n")
file(WRITE ${own}/changelog "${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  * See ../velkaro-scanner/CHANGELOG.md.

 -- ${CPACK_PACKAGE_CONTACT}  ${day}
")
file(GLOB pages ${share}/man/man1/*)
execute_process(COMMAND gzip -9n ${own}/changelog ${pages} COMMAND_ERROR_IS_FATAL ANY)
