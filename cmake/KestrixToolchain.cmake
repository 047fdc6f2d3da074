# Language, warnings and instrumentation: the same for every target.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(KESTRIX_CCACHE ccache)
if(KESTRIX_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${KESTRIX_CCACHE})
endif()

set(KESTRIX_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(KESTRIX_WERROR)
  list(APPEND KESTRIX_WARNINGS -Werror)
endif()

# What is given to users: what the loader has filled in cannot be written to while the program runs.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  add_link_options(LINKER:-z,relro,-z,now)
endif()

if(KESTRIX_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  # The instrumentation makes g++ see uninitialised members inside the standard library.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    list(APPEND KESTRIX_WARNINGS -Wno-maybe-uninitialized)
  endif()
  # For tests that repeat much, or measure memory.
  add_compile_definitions(KESTRIX_SANITIZE)
endif()
if(KESTRIX_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()
if(KESTRIX_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
