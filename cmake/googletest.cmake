# GoogleTest, as GTest::gmock and its kind: the one installed for this host or, where the compiler is for another one,
# built from the sources that Debian's package `googletest` brings for this purpose.
include_guard(GLOBAL)
set(GOOGLETEST_SOURCES /usr/src/googletest CACHE PATH "Sources of GoogleTest, for hosts that have none installed")
find_package(GTest QUIET)
if(NOT TARGET GTest::gmock AND EXISTS ${GOOGLETEST_SOURCES}/CMakeLists.txt)
  set(INSTALL_GTEST OFF)
  add_subdirectory(${GOOGLETEST_SOURCES} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
endif()
