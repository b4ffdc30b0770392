# AddressSanitizer (with LeakSanitizer, where the compiler has it: Apple's does not) and UndefinedBehaviorSanitizer for everything built here; any report ends
# the program.
if(VELKARO_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
# The fuzzer is guided by the code that an input reached.
if(VELKARO_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
