# Unit tests: GoogleTest natively (one ctest entry per test case) and, in the Windows cross
# build, the same executables run under Wine, one ctest entry per executable.
include(GoogleTest)

if(CMAKE_CROSSCOMPILING)
  set(gtest_disable_pthreads OFF CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
  set(VP_WINE_CORE_PREFIX ${CMAKE_BINARY_DIR}/wine-core)
  set(VP_WINE_UI_PREFIX ${CMAKE_BINARY_DIR}/wine-ui)
  # The layout tests have a prefix (and in tools/test.sh a display) of their own, so that they
  # run beside the other UI tests, and their changes of display scale restart only their server.
  set(VP_WINE_LAYOUT_PREFIX ${CMAKE_BINARY_DIR}/wine-layout)
else()
  find_package(GTest REQUIRED)
endif()

# A slow or busy machine gives every test more time with VP_TIMEOUT_SCALE (read here when the
# build is configured, and by the test helpers when they run).
set(VP_TIMEOUT_SCALE "$ENV{VP_TIMEOUT_SCALE}")
if(NOT VP_TIMEOUT_SCALE MATCHES "^[0-9]+$" OR VP_TIMEOUT_SCALE EQUAL 0)
  # ctest takes whole seconds: a fraction rounds up, anything else counts as 1.
  if(VP_TIMEOUT_SCALE MATCHES "^([0-9]*)\\.[0-9]+$")
    math(EXPR VP_TIMEOUT_SCALE "0${CMAKE_MATCH_1} + 1")
  else()
    set(VP_TIMEOUT_SCALE 1)
  endif()
endif()
function(vp_scaled_timeout seconds out)
  math(EXPR scaled "${seconds} * ${VP_TIMEOUT_SCALE}")
  set(${out} ${scaled} PARENT_SCOPE)
endfunction()

# vp_add_test(<name> SOURCES ... [LIBS ...])
function(vp_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE vp_options vp_test_support ${ARG_LIBS} GTest::gmock
                                        GTest::gtest_main)
  if(CMAKE_CROSSCOMPILING)
    vp_scaled_timeout(600 timeout)
    add_test(NAME wine.${name} COMMAND ${name})
    # The tests of one prefix share its registry and folders: one at a time.
    set_tests_properties(wine.${name} PROPERTIES LABELS core TIMEOUT ${timeout}
                         RESOURCE_LOCK ${VP_WINE_CORE_PREFIX}
                         ENVIRONMENT "VP_WINEPREFIX=${VP_WINE_CORE_PREFIX}")
  else()
    vp_scaled_timeout(300 timeout)
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES LABELS core TIMEOUT ${timeout})
  endif()
endfunction()

# vp_add_wine_ui_fixture(<name> <prefix>): the fixture wine_<name>, which runs first among the
# tests that require it and stops a server left from an aborted run in <prefix>: such a server
# keeps the display and the state it was started with.
function(vp_add_wine_ui_fixture name prefix)
  if(NOT TEST wine.${name}.stop-old-server)
    add_test(NAME wine.${name}.stop-old-server
             COMMAND sh -c "export WINEPREFIX='${prefix}'; \
[ -d \"$WINEPREFIX\" ] || exit 0; wineserver -k; wineserver -w; exit 0")
    set_tests_properties(wine.${name}.stop-old-server PROPERTIES LABELS ui
                         FIXTURES_SETUP wine_${name} RESOURCE_LOCK ${prefix})
  endif()
endfunction()

# vp_add_ui_tests(<target> [ALSO_RIGHT_TO_LEFT <Suite.Test>...])
# One ctest entry per TEST/TEST_F in the target's sources, so that one slow test cannot take
# its neighbours' time. They share the UI prefix, so they hold its lock and run one at a time,
# with an English locale (the program inherits the driver's); the listed tests run once more
# in Hebrew.
function(vp_add_ui_tests target)
  cmake_parse_arguments(ARG "" "" "ALSO_RIGHT_TO_LEFT" ${ARGN})
  get_target_property(sources ${target} SOURCES)
  set(space "[ \t\r\n]*")
  set(test_regex "TEST(_F)?\\(${space}([A-Za-z0-9_]+)${space},${space}([A-Za-z0-9_]+)${space}\\)")
  vp_scaled_timeout(120 timeout)
  vp_add_wine_ui_fixture(ui ${VP_WINE_UI_PREFIX})
  foreach(source IN LISTS sources)
    get_filename_component(path ${source} ABSOLUTE)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${path})
    file(READ ${path} text)
    string(REGEX MATCHALL "${test_regex}" found "${text}")
    foreach(match IN LISTS found)
      string(REGEX REPLACE "${test_regex}" "\\2.\\3" name "${match}")
      set(locales en_US.UTF-8)
      if(name IN_LIST ARG_ALSO_RIGHT_TO_LEFT)
        list(APPEND locales he_IL.UTF-8)
      endif()
      foreach(locale IN LISTS locales)
        set(entry wine.ui.${name})
        if(NOT locale STREQUAL "en_US.UTF-8")
          string(REGEX REPLACE "\\..*" "" language ${locale})
          set(entry ${entry}.${language})
        endif()
        add_test(NAME ${entry} COMMAND ${target} --gtest_filter=${name})
        # Exactly this one test passed: a filter that selects nothing must not pass.
        set_tests_properties(${entry} PROPERTIES
          LABELS "ui;ui-sheet" TIMEOUT ${timeout} RESOURCE_LOCK ${VP_WINE_UI_PREFIX}
          FIXTURES_REQUIRED wine_ui
          PASS_REGULAR_EXPRESSION "\\[  PASSED  \\] 1 test\\."
          ENVIRONMENT "VP_WINEPREFIX=${VP_WINE_UI_PREFIX};VP_WINE_DPI=96;LC_ALL=${locale}")
      endforeach()
    endforeach()
  endforeach()
endfunction()
