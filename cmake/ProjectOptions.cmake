# Flags that every target of the project is compiled with; linked PRIVATE, never exported.
add_library(project_options INTERFACE)
target_compile_options(project_options INTERFACE
  -Wall -Wextra -Wpedantic $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>
  -Wnon-virtual-dtor -Wold-style-cast -Wcast-align -Woverloaded-virtual -Wextra-semi -Werror)
target_include_directories(project_options INTERFACE "${PROJECT_SOURCE_DIR}")

if(LUMICOR_SANITIZE)
  add_compile_options(-fsanitize=${LUMICOR_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${LUMICOR_SANITIZE})
endif()

# The libraries whose branches a fuzzer follows; linked PRIVATE by each of them. Programs without a fuzzer run as before.
add_library(project_coverage INTERFACE)
if(LUMICOR_FUZZ)
  target_compile_options(project_coverage INTERFACE -fsanitize=fuzzer-no-link)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}" CACHE STRING "" FORCE)
endif()
