# One function per kind of target. Every target sees src/ and the project root as its include path, so that
# an include names its folder ("protocol/MeterReading.h") and the arrows between folders can be read off it.

function(_kestrix_common target)
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src PRIVATE ${PROJECT_SOURCE_DIR})
  target_compile_options(${target} PRIVATE ${KESTRIX_WARNINGS})
  target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS)
endfunction()

# A program on Qt. The loader asks the libraries one after the other for each name, in the order in which they stand in the program:
# first those that have most of what is asked for.
function(kestrix_find_names_soon target)
  if(NOT KESTRIX_SANITIZE)
    set(own ${ARGN})
    list(TRANSFORM own REPLACE "(.+)" "$<TARGET_FILE:\\1>")
    target_link_options(${target} PRIVATE
      LINKER:--push-state,--no-as-needed -lstdc++ -lc $<TARGET_FILE:Qt6::Core> ${own} LINKER:--pop-state)
  endif()
endfunction()

# A program with a window: under the sanitizers it knows what the toolkit leaks.
function(kestrix_has_window target)
  if(KESTRIX_SANITIZE)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/KnownLeaks.cpp)
  endif()
endfunction()

# kestrix_library(NAME SOURCES a.cpp... LINK lib...)
function(kestrix_library target)
  cmake_parse_arguments(A "" "" "SOURCES;LINK" ${ARGN})
  add_library(${target} STATIC ${A_SOURCES})
  _kestrix_common(${target})
  # As a joint file: what it includes is compiled once for these.
  set_target_properties(${target} PROPERTIES UNITY_BUILD_BATCH_SIZE 16)
  target_link_libraries(${target} PUBLIC ${A_LINK})
endfunction()

# kestrix_app(NAME SOURCES a.cpp... LINK lib...): an installed program.
function(kestrix_app target)
  cmake_parse_arguments(A "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${target} ${A_SOURCES})
  _kestrix_common(${target})
  target_link_libraries(${target} PRIVATE ${A_LINK})
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()

# For what runs rarely and waits for no processor: the compiler's last effort takes a quarter of its time.
function(kestrix_compile_quickly)
  if(CMAKE_BUILD_TYPE STREQUAL "Release")
    foreach(target IN LISTS ARGN)
      target_compile_options(${target} PRIVATE -O1)
    endforeach()
  endif()
endfunction()

# Of a test the compiler's time is what a newcomer waits for: most of it goes into the headers of the test
# framework and into making quick what runs once. What is tested is as quick as it is given to users.
function(_kestrix_read_quickly)
  foreach(target IN LISTS ARGN)
    target_precompile_headers(${target} REUSE_FROM kestrix_test_headers)
    _kestrix_compile_plainly(${target})
  endforeach()
endfunction()

# The sanitizers look for faults of what is tested. In the tests themselves they take most of the compiler's time.
function(_kestrix_compile_plainly target)
  target_compile_options(${target} PRIVATE -O0)
  if(KESTRIX_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=undefined)
  endif()
endfunction()

# kestrix_test(NAME [GUI] [ONE_PROCESS] [PROGRAMS] [LONG] SOURCES a_test.cpp... LINK lib...): one program of tests; each test is known to ctest
# by name. GUI: with fonts and windows, though without a display. ONE_PROCESS: ctest knows the program only, because what its tests share is
# dear to make. SHARDS: into how many processes the tests of a GUI program are divided under the sanitizers, where each program runs
# in one otherwise. PROGRAMS: they start our programs, whose builds the short run under the sanitizers leaves out. LONG: a test of
# them takes long; like whole programs they begin before the others, so that nobody waits for one at the end.
function(kestrix_test target)
  if(NOT KESTRIX_TESTS)
    return()
  endif()
  cmake_parse_arguments(A "GUI;ONE_PROCESS;PROGRAMS;LONG" "SHARDS" "SOURCES;LINK" ${ARGN})
  set(main kestrix_test_main)
  if(A_GUI)
    set(main kestrix_gui_test_main)
  endif()
  add_executable(${target} ${A_SOURCES})
  _kestrix_common(${target})
  # By -Wconversion clang, unlike g++, warns of every constant character or flag of Qt in a list of numbers.
  target_compile_options(${target} PRIVATE -Wno-sign-conversion)
  # At the end: the folders under src/ name tests of theirs before the headers are there.
  cmake_language(EVAL CODE
    "cmake_language(DEFER DIRECTORY \${PROJECT_SOURCE_DIR} CALL _kestrix_read_quickly ${target})")
  target_link_libraries(${target} PRIVATE ${A_LINK} ${main} GTest::gmock)
  target_compile_definitions(${target} PRIVATE
    KESTRIX_SOURCE_DIR="${PROJECT_SOURCE_DIR}" KESTRIX_BINARY_DIR="${PROJECT_BINARY_DIR}")
  if(A_GUI)
    kestrix_has_window(${target})
  endif()
  set(labels "")
  if(A_PROGRAMS)
    set(labels LABELS programs)
  else()
    set_property(GLOBAL APPEND PROPERTY KESTRIX_LIBRARY_TESTS ${target})
  endif()
  set(first COST 1000)
  if(A_SHARDS AND KESTRIX_SANITIZE)
    math(EXPR last "${A_SHARDS} - 1")
    foreach(shard RANGE ${last})
      add_test(NAME ${target}.${shard} COMMAND ${target})
      set_tests_properties(${target}.${shard} PROPERTIES TIMEOUT 600 ${first}
        ENVIRONMENT "GTEST_TOTAL_SHARDS=${A_SHARDS};GTEST_SHARD_INDEX=${shard}")
    endforeach()
  elseif(A_ONE_PROCESS OR (A_GUI AND KESTRIX_SANITIZE))
    # Under the sanitizers the start of one with fonts and windows costs more than most tests.
    add_test(NAME ${target} COMMAND ${target})
    set_tests_properties(${target} PROPERTIES TIMEOUT 600 ${first} ${labels})
  else()
    if(NOT A_LONG)
      set(first "")
    endif()
    gtest_discover_tests(${target} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 900 ${first} ${labels})
  endif()
endfunction()

# A program of tests finds a module of the program beside itself.
function(kestrix_test_uses_module target module)
  add_dependencies(${target} ${module})
  add_custom_command(TARGET ${target} POST_BUILD COMMAND
    ${CMAKE_COMMAND} -E create_symlink $<TARGET_FILE:${module}> $<TARGET_FILE_DIR:${target}>/$<TARGET_FILE_NAME:${module}>)
endfunction()

# Into build/PRESET/bench, and into the target `benchmarks`.
function(kestrix_benchmark_program target)
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bench)
  set_property(GLOBAL APPEND PROPERTY KESTRIX_BENCHMARK_PROGRAMS ${target})
endfunction()

# kestrix_benchmark(NAME SOURCES a_bench.cpp... LINK lib...)
function(kestrix_benchmark target)
  cmake_parse_arguments(A "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${target} ${A_SOURCES})
  _kestrix_common(${target})
  target_link_libraries(${target} PRIVATE ${A_LINK} benchmark::benchmark)
  kestrix_benchmark_program(${target})
endfunction()

# kestrix_fuzzer(NAME SOURCES a_fuzz.cpp... LINK lib...): a libFuzzer program; its seeds stand in fuzz/seeds/NAME.
function(kestrix_fuzzer target)
  cmake_parse_arguments(A "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${target} ${A_SOURCES})
  _kestrix_common(${target})
  target_link_options(${target} PRIVATE -fsanitize=fuzzer)
  target_link_libraries(${target} PRIVATE ${A_LINK})
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/fuzz)
endfunction()
