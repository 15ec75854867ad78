# The few kinds of target that the project has, so that flags stand in one place.

add_library(qir_flags INTERFACE)
target_compile_options(qir_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
                                           -Wcast-qual -Wformat=2)
target_compile_definitions(qir_flags INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH
                                               QT_NO_KEYWORDS)
target_include_directories(qir_flags INTERFACE ${PROJECT_SOURCE_DIR})
if(QIR_NO_PLACES)
  target_compile_options(qir_flags INTERFACE -ffile-prefix-map=${PROJECT_BINARY_DIR}=. -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
endif()
if(QIR_WARNINGS_AS_ERRORS)
  target_compile_options(qir_flags INTERFACE -Werror)
endif()
if(QIR_SANITIZE)
  # -O1 keeps the instrumented tests quick; frame pointers keep their reports readable.
  target_compile_options(qir_flags INTERFACE -fsanitize=${QIR_SANITIZE} -fno-sanitize-recover=all
                                             -fno-omit-frame-pointer -O1 -g1)
  target_link_options(qir_flags INTERFACE -fsanitize=${QIR_SANITIZE})
endif()

include(QirHardening)
qir_harden(qir_flags)

# Not compiled together: libraries whose sources often have helpers of one name, and single sources that have one of their
# neighbours'.
set(QIR_LIBRARIES_APART qir_cli_edit qir_cli_exchange qir_cli_tables qir_compare_engine qir_compare_keyed)
set(QIR_SOURCES_APART
    FileHeader.cpp # container
    FileSave.cpp InPlaceSearch.cpp KeptVersion.cpp # file
    Journal.cpp JournalHead.cpp # journal
    ColumnReader.cpp RecordOrder.cpp) # model

# qir_library(NAME SOURCES file... [LINK target...]): a static library of one folder.
function(qir_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
  add_library(${name} STATIC ${arg_SOURCES})
  if(QIR_UNITY AND NOT name IN_LIST QIR_LIBRARIES_APART)
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 16)
    set_source_files_properties(${QIR_SOURCES_APART} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  endif()
  target_link_libraries(${name} PUBLIC qir_flags ${arg_LINK})
endfunction()

# qir_test(NAME SOURCES file... [LINK target...] [TIMEOUT seconds]): one GoogleTest program, one ctest entry.
# Qt finds no display in tests: the offscreen platform stands in.
function(qir_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "SOURCES;LINK")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE qir_flags GTest::gtest GTest::gmock ${arg_LINK})
  qir_register_test(${name} TIMEOUT ${arg_TIMEOUT})
endfunction()

# qir_window_test(NAME SOURCES file... [LINK target...] [TIMEOUT seconds]): one Qt Test program.
function(qir_window_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "SOURCES;LINK")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE qir_flags Qt6::Test ${arg_LINK})
  qir_register_test(${name} TIMEOUT ${arg_TIMEOUT})
endfunction()

# qir_register_test(NAME [PROGRAM target] [ARGUMENTS argument...] [TIMEOUT seconds]): makes a built program, the one of
# that name where none is given, a ctest entry with the tests' environment.
function(qir_register_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "PROGRAM;TIMEOUT" "ARGUMENTS")
  if(NOT arg_PROGRAM)
    set(arg_PROGRAM ${name})
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 300)
  endif()
  set_target_properties(${arg_PROGRAM} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  # How long a test may take is said by TIMEOUT alone: Qt's own limit is too short for many rows on a busy machine.
  # Test programs find the component where the build put it, whatever folder they stand in.
  add_test(NAME ${name} COMMAND ${arg_PROGRAM} ${arg_ARGUMENTS})
  set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT} ENVIRONMENT
    "QTEST_FUNCTION_TIMEOUT=900000;QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;XDG_STATE_HOME=${CMAKE_BINARY_DIR}/tests/state;QIR_COMPONENT_PATH=${QIR_COMPONENT_OUTPUT_DIRECTORY};LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/leaks.supp:print_suppressions=0")
endfunction()

# qir_bench_program(NAME SOURCES file... [LINK target...]): a program that measures; run by hand, never by ctest. It stands
# beside the component's folder and finds the component there.
function(qir_bench_program name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE qir_flags ${arg_LINK})
  add_dependencies(${name} QIRTBase) # found at run time, not linked
endfunction()

# qir_benchmark(NAME SOURCES file... [LINK target...]): a Google Benchmark program.
function(qir_benchmark name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
  qir_bench_program(${name} SOURCES ${arg_SOURCES} LINK benchmark::benchmark ${arg_LINK})
endfunction()
