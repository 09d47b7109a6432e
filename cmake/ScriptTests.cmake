# Tests that are scripts: they run programs or read the tree, so they belong to an ordinary build.  Sanitizer builds
# run the unit tests alone.
option(SOLUTIONMANAGER_SCRIPT_TESTS "Register the end-to-end, crash and house tests" ON)
if(SOLUTIONMANAGER_SANITIZERS)
  set(SOLUTIONMANAGER_SCRIPT_TESTS OFF)
endif()

# Debian's own interpreter goes first: another one on the path may lack what Debian's has.
find_program(HOUSE_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH)
if(NOT HOUSE_PYTHON)
  find_program(HOUSE_PYTHON python3 REQUIRED)
endif()

# script_tests(LABEL TIMEOUT PATTERN...): one test per script found, run in a folder of its own with
# SOLUTIONMANAGER_BIN and SOLUTIONMANAGER_SOURCE set; an exit status of 77 counts as skipped.
function(script_tests label timeout)
  if(NOT SOLUTIONMANAGER_SCRIPT_TESTS)
    return()
  endif()
  file(GLOB scripts CONFIGURE_DEPENDS ${ARGN})
  foreach(script IN LISTS scripts)
    get_filename_component(name ${script} NAME_WE)
    add_test(NAME ${label}.${name}
      COMMAND ${HOUSE_PYTHON} ${CMAKE_SOURCE_DIR}/tests/support/run_script.py ${script})
    set_tests_properties(${label}.${name} PROPERTIES
      LABELS ${label} TIMEOUT ${timeout} SKIP_RETURN_CODE 77
      ENVIRONMENT "SOLUTIONMANAGER_BIN=${CMAKE_RUNTIME_OUTPUT_DIRECTORY};SOLUTIONMANAGER_SOURCE=${CMAKE_SOURCE_DIR}")
  endforeach()
endfunction()
