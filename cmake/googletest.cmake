# The system's GoogleTest; otherwise its sources are fetched and accepted only with this checksum.
find_package(GTest QUIET)
if(NOT TARGET GTest::gmock)
  include(FetchContent)
  FetchContent_Declare(googletest
    URL https://github.com/google/googletest/archive/refs/tags/release-1.12.1.tar.gz
    URL_HASH SHA256=81964fe578e9bd7c94dfdb09c8e4d6e6759e19967e397dbea48d1c10e45d0df2
    DOWNLOAD_EXTRACT_TIMESTAMP OFF
    SYSTEM)
  set(INSTALL_GTEST OFF)
  message(STATUS "GoogleTest is not installed, fetching it")
  FetchContent_MakeAvailable(googletest)
endif()
