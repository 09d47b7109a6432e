# Language level, warnings and sanitizers: one place, used by every target through project_options.
option(SOLUTIONMANAGER_BUILD_TESTS "Build the test suite" ON)
option(SOLUTIONMANAGER_BUILD_FUZZERS "Build the libFuzzer targets (needs clang)" OFF)
option(SOLUTIONMANAGER_WARNINGS_AS_ERRORS "Treat warnings as errors" ON)
set(SOLUTIONMANAGER_SANITIZERS "" CACHE STRING "Sanitizers, e.g. address,undefined")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

add_library(project_options INTERFACE)
target_compile_options(project_options INTERFACE -fmacro-prefix-map=${CMAKE_SOURCE_DIR}/= -Wall -Wextra -Wshadow -Wnon-virtual-dtor)
# Fused multiply-add would give sweeps other values on one machine than on another, and no stored point would be found.
target_compile_options(project_options INTERFACE -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Overloaded virtual families are part of the contracts: a class often overrides one of two namesakes.
  target_compile_options(project_options INTERFACE -Wno-overloaded-virtual)
  # At -O3 version 12 takes ordinary joins of strings for overlapping or overlong copies.
  target_compile_options(project_options INTERFACE -Wno-restrict -Wno-stringop-overflow)
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  # Fields stand in their told order before the operation that reads them does.
  target_compile_options(project_options INTERFACE -Wno-overloaded-virtual -Wno-unused-private-field)
endif()
if(SOLUTIONMANAGER_WARNINGS_AS_ERRORS)
  target_compile_options(project_options INTERFACE -Werror)
endif()
if(SOLUTIONMANAGER_SANITIZERS)
  target_compile_options(project_options INTERFACE
    -fsanitize=${SOLUTIONMANAGER_SANITIZERS} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(project_options INTERFACE -fsanitize=${SOLUTIONMANAGER_SANITIZERS})
endif()
if(SOLUTIONMANAGER_BUILD_FUZZERS)
  # Libraries report which branches an input reached; the fuzzers link the engine.
  target_compile_options(project_options INTERFACE -fsanitize=fuzzer-no-link)
  target_link_options(project_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()
