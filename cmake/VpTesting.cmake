# Unit tests: GoogleTest natively (one ctest entry per test case) and, in the Windows cross
# build, the same executables run under Wine, one ctest entry per executable.
include(GoogleTest)

if(CMAKE_CROSSCOMPILING)
  set(gtest_disable_pthreads OFF CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
  set(VP_WINE_CORE_PREFIX ${CMAKE_BINARY_DIR}/wine-core)
  set(VP_WINE_UI_PREFIX ${CMAKE_BINARY_DIR}/wine-ui)
else()
  find_package(GTest REQUIRED)
endif()

# vp_add_test(<name> SOURCES ... [LIBS ...])
function(vp_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE vp_options vp_test_support ${ARG_LIBS} GTest::gmock
                                        GTest::gtest_main)
  if(CMAKE_CROSSCOMPILING)
    add_test(NAME wine.${name} COMMAND ${name})
    set_tests_properties(wine.${name} PROPERTIES LABELS core TIMEOUT 600
                         ENVIRONMENT "VP_WINEPREFIX=${VP_WINE_CORE_PREFIX}")
  else()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES LABELS core TIMEOUT 300)
  endif()
endfunction()
