# The warnings that all our targets are built with; fatal in the presets that developers and CI use.
function(velkaro_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
  if(VELKARO_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
