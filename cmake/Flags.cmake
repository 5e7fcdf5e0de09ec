# The flags of our own targets. They belong to an interface target that is never exported, so that a
# consumer of the package is not asked to compile with them.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

option(VOZ_WARNINGS_AS_ERRORS "Treat warnings as errors (our own presets switch it on)" OFF)
set(VOZ_SANITIZE "" CACHE STRING "Sanitizers, comma separated: address,undefined or fuzzer-no-link,...")
option(VOZ_COVERAGE "Instrument for coverage" OFF)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

add_library(vozdravo_flags INTERFACE)
# A vote or a strict comparison must not flip with the optimizer: no contraction, no fast-math.
target_compile_options(vozdravo_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -ffp-contract=off
  # GCC 12 sees overlapping copies in "text" + std::string (its bug 105329).
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
  # Clang counts it to -Wconversion, GCC does not.
  $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>
  $<$<BOOL:${VOZ_WARNINGS_AS_ERRORS}>:-Werror>)

if(VOZ_SANITIZE)
  add_compile_options(-fsanitize=${VOZ_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${VOZ_SANITIZE})
endif()
if(VOZ_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()
