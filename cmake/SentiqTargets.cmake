# The project's own ways of declaring targets: one set of language rules and warnings for all of them.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Programs lie at the top of the build folder, beside the DLLs that they load. (The expression, which is empty, keeps
# Visual Studio from adding a folder for each configuration.)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}$<0:>")

add_library(sentiq_options INTERFACE)
target_include_directories(sentiq_options INTERFACE "${PROJECT_SOURCE_DIR}")
if(WIN32)
  target_compile_definitions(sentiq_options INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN)
endif()
if(MSVC)
  target_compile_options(sentiq_options INTERFACE /W4 /permissive- /utf-8 /Zc:__cplusplus)
  # CMake's /EHsc takes it that functions declared extern "C" never throw; the crash client's may.
  target_compile_options(sentiq_options INTERFACE /EHs /EHc-)
  set(CMAKE_MSVC_DEBUG_INFORMATION_FORMAT ProgramDatabase)
  target_compile_definitions(sentiq_options INTERFACE _SILENCE_CXX17_CODECVT_HEADER_DEPRECATION_WARNING
    _CRT_SECURE_NO_WARNINGS)
else()
  if(EMSCRIPTEN)  # Its newer libraries warn of <codecvt>, too, in whose place the standard has put nothing.
    target_compile_definitions(sentiq_options INTERFACE _LIBCPP_DISABLE_DEPRECATION_WARNINGS)
  endif()
  target_compile_options(sentiq_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
  # Each function in a section of its own, so that the linker can drop what nobody calls.
  target_compile_options(sentiq_options INTERFACE -ffunction-sections -fdata-sections)
  # No path of the machine that built it ends up in a program.
  target_compile_options(sentiq_options INTERFACE "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.")
endif()
# Hardening. MinGW-w64 has no control-flow guard; Visual C++ has.
if(MSVC)
  target_compile_options(sentiq_options INTERFACE /sdl /guard:cf)
  # The last one: imported DLLs come from the program's folder or the system's, never from the current one or PATH.
  target_link_options(sentiq_options INTERFACE /guard:cf /CETCOMPAT /HIGHENTROPYVA /DYNAMICBASE /NXCOMPAT
    /DEPENDENTLOADFLAG:0xA00)
elseif(WIN32)
  target_compile_options(sentiq_options INTERFACE -fstack-protector-strong)
  target_compile_definitions(sentiq_options INTERFACE $<$<CONFIG:Release>:_FORTIFY_SOURCE=2>)
  # The last one leaves the time of the build out of the file: two builds of one commit are the same bytes.
  target_link_libraries(sentiq_options INTERFACE ssp)
  target_link_options(sentiq_options INTERFACE -Wl,--high-entropy-va -Wl,--dynamicbase -Wl,--nxcompat
    -Wl,--no-insert-timestamp)
endif()
if(SENTIQ_SANITIZE)
  # These builds compile several sources as one (their presets), where a name local to one may hide another's; the other
  # builds see all that shadows within a source.
  # GCC 12 sees uninitialised members within its own <regex> when it instruments it.
  target_compile_options(sentiq_options INTERFACE -fsanitize=${SENTIQ_SANITIZE} -fno-sanitize-recover=all
    -fno-omit-frame-pointer -Wno-shadow $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(sentiq_options INTERFACE -fsanitize=${SENTIQ_SANITIZE})
endif()

# Code that ends up in a shipped program: debug symbols, and objects for linking with and without link-time optimisation.
# Tests link without it.
if(WIN32 AND NOT MSVC)
  set(sentiq_shipped_options -g $<$<CONFIG:Release>:-flto=auto> $<$<CONFIG:Release>:-ffat-lto-objects>)
  # As one piece, which comes out smaller than several.
  set(sentiq_program_link_options $<$<CONFIG:Release>:-flto=auto> $<$<CONFIG:Release>:-flto-partition=one>)
  set(sentiq_test_link_options -fno-lto)
endif()

# sentiq_library(NAME SOURCE...): one folder's library, built when something that is built links it.
function(sentiq_library name)
  add_library(${name} STATIC EXCLUDE_FROM_ALL ${ARGN})
  target_link_libraries(${name} PUBLIC sentiq_options)
  target_compile_options(${name} PRIVATE ${sentiq_shipped_options})
endfunction()

# sentiq_program(NAME DESCRIPTION [SETTING] [PRIVATE_DLL name]): finishes a program that is shipped. It gets a version
# resource; a manifest, with one more of Windows' settings, and with a DLL that is taken from beside the program only;
# sentiq_program_link_options, without what nobody calls; and a file beside it that holds its debug symbols.
function(sentiq_program name description)
  if(WIN32)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "PRIVATE_DLL" "")
    set(settings ${arg_UNPARSED_ARGUMENTS})
    set(files "")
    if(arg_PRIVATE_DLL)
      set(files "\n  <file name=\"${arg_PRIVATE_DLL}\"/>")
    endif()
    string(REPLACE "." ", " numbers "${PROJECT_VERSION}")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/Program.rc.in" ${name}.rc @ONLY)
    configure_file("${PROJECT_SOURCE_DIR}/cmake/Program.manifest.in" ${name}.manifest @ONLY)
    set_source_files_properties("${CMAKE_CURRENT_BINARY_DIR}/${name}.rc" PROPERTIES
      OBJECT_DEPENDS "${CMAKE_CURRENT_BINARY_DIR}/${name}.manifest")
    target_sources(${name} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${name}.rc")
    target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}")
  endif()
  if(NOT MSVC)
    target_link_options(${name} PRIVATE -Wl,--gc-sections)
  endif()
  if(MSVC)
    target_link_options(${name} PRIVATE /MANIFEST:NO)
    set_property(TARGET ${name} PROPERTY INTERPROCEDURAL_OPTIMIZATION_RELEASE ON)
    # With debug information the linker else keeps what nobody calls, and functions that are alike.
    target_link_options(${name} PRIVATE $<$<CONFIG:Release>:/DEBUG> $<$<CONFIG:Release>:/OPT:REF,ICF>)
  elseif(WIN32)
    target_compile_options(${name} PRIVATE ${sentiq_shipped_options})
    target_link_options(${name} PRIVATE ${sentiq_program_link_options})
    # These tools else write the time of the build into the file.
    set(without_time ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0)
    add_custom_command(TARGET ${name} POST_BUILD
      COMMAND ${without_time} ${CMAKE_OBJCOPY} --only-keep-debug "$<TARGET_FILE:${name}>" "$<TARGET_FILE:${name}>.debug"
      COMMAND ${without_time} ${CMAKE_STRIP} "$<TARGET_FILE:${name}>"
      COMMAND ${without_time} ${CMAKE_OBJCOPY} "--add-gnu-debuglink=$<TARGET_FILE:${name}>.debug" "$<TARGET_FILE:${name}>"
      COMMAND ${CMAKE_COMMAND} -E echo "${name}: the sizes of its sections:"
      COMMAND ${CMAKE_SIZE} "$<TARGET_FILE:${name}>"
      VERBATIM)
  endif()
endfunction()

# sentiq_entry(NAME SECONDS COMMAND...): one ctest entry, with its longest time. It waits for its build where that is an
# entry of its own (tests/CMakeLists.txt).
function(sentiq_entry name seconds)
  add_test(NAME ${SENTIQ_TEST_PREFIX}.${name} COMMAND ${ARGN})
  set_tests_properties(${SENTIQ_TEST_PREFIX}.${name} PROPERTIES
    TIMEOUT ${seconds} FIXTURES_REQUIRED ${SENTIQ_TEST_PREFIX})
endfunction()

# sentiq_test(NAME [SEPARATE] [REPLACES_CALLS] SOURCES file... LIBRARIES target... [ENVIRONMENT name=value...]): one test
# program, and one ctest entry unless SEPARATE, which leaves the entries to the caller. REPLACES_CALLS: it takes the place of
# single system calls (tests/support/SystemCalls.h).
# Tests are compiled more often than they run: without optimisation, and with GoogleTest's headers read once for all.
if(NOT MSVC)
  set(sentiq_test_compile_options $<$<CONFIG:Release>:-O0>)
endif()
if(SENTIQ_SANITIZE)  # It is the product that is looked into; this doubles the time that GoogleTest's templates take.
  list(APPEND sentiq_test_compile_options -fno-sanitize=undefined)
endif()
function(sentiq_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "SEPARATE;REPLACES_CALLS" "" "SOURCES;LIBRARIES;ENVIRONMENT")
  if(NOT MSVC AND NOT TARGET sentiq_test_headers)
    file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/TestHeaders.cpp" CONTENT "")
    add_library(sentiq_test_headers STATIC "${CMAKE_BINARY_DIR}/TestHeaders.cpp")
    target_link_libraries(sentiq_test_headers PRIVATE sentiq_options GTest::gmock)
    target_compile_options(sentiq_test_headers PRIVATE ${sentiq_test_compile_options})
    target_precompile_headers(sentiq_test_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE sentiq_options ${arg_LIBRARIES} GTest::gmock_main)
  target_compile_options(${name} PRIVATE ${sentiq_test_compile_options})
  if(TARGET sentiq_test_headers)
    target_precompile_headers(${name} REUSE_FROM sentiq_test_headers)
  endif()
  target_link_options(${name} PRIVATE ${sentiq_test_link_options})
  if(arg_REPLACES_CALLS AND WIN32 AND NOT MSVC)
    # The import library defines the call once more as soon as the runtime library uses it, too: the test's, which comes
    # first, counts. No section is dropped: without the import that nobody calls now, those behind it would shift.
    target_link_options(${name} PRIVATE -Wl,--allow-multiple-definition)
  endif()
  if(NOT arg_SEPARATE)
    sentiq_entry(${name} 300 ${name})
    set_tests_properties(${SENTIQ_TEST_PREFIX}.${name} PROPERTIES ENVIRONMENT "${arg_ENVIRONMENT}")
  endif()
endfunction()
