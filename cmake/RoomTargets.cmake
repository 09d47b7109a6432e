# A room is a folder of sources; a target is a set of rooms.  Sources are found by folder, so that
# adding a file to a room needs no change here.

# room_sources(OUT_VARIABLE ROOM...): all .cpp files below the given folders.
function(room_sources out)
  set(found)
  foreach(room IN LISTS ARGN)
    file(GLOB_RECURSE here CONFIGURE_DEPENDS ${room}/*.cpp)
    list(APPEND found ${here})
  endforeach()
  set(${out} ${found} PARENT_SCOPE)
endfunction()

# Unit tests bear the label of the build they stand in, so that one ctest run over several builds can choose.  They need
# names of their own too: ctest gives the properties of a test to every test of that name, in whatever build.
if(SOLUTIONMANAGER_SANITIZERS)
  set(unit_label unit-sanitize)
  set(unit_suffix "@sanitize")
else()
  set(unit_label unit-release)
  set(unit_suffix "")
endif()

# What ctest runs from a build without its scripts; programs that only users start are no part of it.
add_custom_target(unit_tests)

# room_tests(NAME FOLDER LIBRARY...): one GoogleTest program per folder of tests, each case known to ctest.
function(room_tests name folder)
  room_sources(sources ${CMAKE_CURRENT_SOURCE_DIR}/${folder})
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE test_support ${ARGN})
  target_precompile_headers(${name} PRIVATE <gtest/gtest.h>)
  add_dependencies(unit_tests ${name})
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
                       TEST_SUFFIX "${unit_suffix}" PROPERTIES TIMEOUT 300 LABELS ${unit_label})
endfunction()
