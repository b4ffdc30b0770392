# Makes a parser bug end the program instead of serving an attacker. Each flag is used if the compiler knows it;
# tests/packaging/test_hardening.py checks the result.
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
include(CheckPIESupported)

check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

function(velkaro_harden_compiling flag)
  string(MAKE_C_IDENTIFIER "takes${flag}" taken)
  check_cxx_compiler_flag("-Werror ${flag}" ${taken})
  if(${taken})
    add_compile_options(${flag})
  endif()
endfunction()

function(velkaro_harden_linking flag)
  string(MAKE_C_IDENTIFIER "takes${flag}" taken)
  check_linker_flag(CXX ${flag} ${taken})
  if(${taken})
    add_link_options(${flag})
  endif()
endfunction()

# Nothing replaces a program's own functions, so they may still be inlined into each other.
velkaro_harden_compiling(-fno-semantic-interposition)
velkaro_harden_compiling(-fstack-protector-strong)
velkaro_harden_compiling(-fstack-clash-protection)
# Indirect jumps only reach valid targets. The first flag is for x86_64 and the second for arm64; a program for both has neither.
velkaro_harden_compiling(-fcf-protection=full)
velkaro_harden_compiling(-mbranch-protection=standard)
velkaro_harden_linking(LINKER:-z,relro)
velkaro_harden_linking(LINKER:-z,now)
velkaro_harden_linking(LINKER:-z,noexecstack)

# Works only on optimised code, and the sanitizers check more. A compiler may already have a default level.
if(NOT VELKARO_SANITIZE)
  add_compile_options("$<$<CONFIG:Release,RelWithDebInfo>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endif()
