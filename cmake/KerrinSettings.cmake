# SPDX-License-Identifier: BSD-3-Clause
# Compiler, linker and output settings that hold for every target of ours.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

find_program(KERRIN_CCACHE ccache)
if(KERRIN_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${KERRIN_CCACHE}")
endif()
find_program(KERRIN_MOLD mold)
if(KERRIN_MOLD)
  add_link_options(-fuse-ld=mold)
endif()

if(KERRIN_SANITIZE)
  add_compile_options(-fsanitize=${KERRIN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${KERRIN_SANITIZE})
endif()

# Our own warnings; targets link it privately, so that it never reaches users of the libraries.
add_library(kerrin_warnings INTERFACE)
target_compile_options(kerrin_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${KERRIN_WERROR}>:-Werror>)

set(KERRIN_DATA_DIR "${CMAKE_SOURCE_DIR}/../shared/data" CACHE PATH "Folder of the real meshes that tests and benchmarks read if it is there")
