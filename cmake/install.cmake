# What is installed, in four parts: the scanner, the reader, the tools for fleets, and the documentation.
include(GNUInstallDirs)

# A program with its manual page and its completions, where each shell looks for them.
function(velkaro_install_program program component)
  install(TARGETS ${program} RUNTIME COMPONENT ${component})
  install(FILES docs/man/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${component})
  set(completions packaging/completions)
  install(FILES ${completions}/${program}.bash RENAME ${program}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT ${component})
  install(FILES ${completions}/_${program} DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT ${component})
  install(FILES ${completions}/${program}.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT ${component})
endfunction()

velkaro_install_program(velkaro-scanner scanner)
if(TARGET inv)
  velkaro_install_program(inv reader)
  install(DIRECTORY packaging/policies DESTINATION ${CMAKE_INSTALL_DATADIR}/velkaro-scanner COMPONENT reader)
endif()

# Files without a suffix are programs.
set(fleet ${CMAKE_INSTALL_DATADIR}/velkaro-scanner)
install(DIRECTORY fleet DESTINATION ${fleet} COMPONENT fleet FILES_MATCHING REGEX "/[^/]*[.][^/]*$")
install(DIRECTORY fleet DESTINATION ${fleet} COMPONENT fleet
  FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE FILES_MATCHING REGEX "/[^/.]+$")

# Documentation for those who run the programs and read their files. How to build and release them is only for those with the sources.
install(FILES README.md SECURITY.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT documentation FILES_MATCHING
  PATTERN "*.md" PATTERN "*.json" PATTERN man EXCLUDE PATTERN architecture.md EXCLUDE PATTERN porting.md EXCLUDE PATTERN releasing.md EXCLUDE)

# Removes what the last `cmake --install` of each component put there; needs the DESTDIR it was given.
add_custom_target(uninstall COMMAND ${CMAKE_COMMAND} -D BUILD=${PROJECT_BINARY_DIR} -P ${PROJECT_SOURCE_DIR}/cmake/uninstall.cmake VERBATIM)
