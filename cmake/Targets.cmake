# What the targets of this project have in common.

set(DRVREPO_UNMEASURED_OPTIONS "" CACHE STRING
    "Options of the compiler for tests and shell, whose speed nobody measures, e.g. -O0: built sooner")
# A compiler cache couldn't keep what is compiled with a precompiled header.
if(CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
endif()

# The warnings, the language and the sanitizers; every target of ours gets them.
function(drvrepo_settings target)
    target_compile_features(${target} PUBLIC cxx_std_17)
    # A user who adds this folder to his own build may have a compiler that warns of more.
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        COMPILE_WARNING_AS_ERROR ${PROJECT_IS_TOP_LEVEL})
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wformat=2 -Wformat-nonliteral -Wnull-dereference)
    if(DRVREPO_SANITIZE)
        target_compile_options(${target} PRIVATE
            -fsanitize=${DRVREPO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${DRVREPO_SANITIZE})
    endif()
endfunction()

# A library that exports only what <name>.map beside its CMakeLists.txt lists, of what its headers
# mark with <NAME>_EXPORT.
function(drvrepo_add_library name)
    string(TOUPPER ${name} upper)
    add_library(${name} ${ARGN})
    add_library(drvrepo::${name} ALIAS ${name})
    drvrepo_settings(${name})
    target_compile_definitions(${name} PRIVATE ${upper}_BUILD)
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        POSITION_INDEPENDENT_CODE ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    # A unique symbol would pin the library: dlclose could not unload it. Nobody replaces a single
    # function of the library: its own calls of them go straight there.
    target_compile_options(${name} PRIVATE
        $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique> -fno-semantic-interposition -ffunction-sections)
    if(BUILD_SHARED_LIBS)
        target_link_options(${name} PRIVATE -Wl,-z,relro -Wl,--as-needed -Wl,-Bsymbolic-functions)
        # Small: without what was inlined everywhere, and without pages that are padding.
        target_link_options(${name} PRIVATE -Wl,--gc-sections)
        if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64") # elsewhere there are none
            target_link_options(${name} PRIVATE -Wl,-z,noseparate-code)
        endif()
        # The sanitizer's run-time functions are in the executable, not in the library; and it adds
        # symbols of its own.
        if(NOT DRVREPO_SANITIZE)
            set(map ${CMAKE_CURRENT_SOURCE_DIR}/${name}.map)
            target_link_options(${name} PRIVATE -Wl,--no-undefined -Wl,--version-script=${map})
            set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${map})
        endif()
    endif()
endfunction()

# One GoogleTest executable, test_<name>, from the given sources. Each of its tests becomes one of
# ctest's, labelled <name>, that fails when it takes longer than TIMEOUT seconds (60). OPTIMISED for
# tests that compute for long themselves. Those that may take longest begin first.
#
# Cross-compiled, the executable is one test of ctest's with ten times as long: the emulator takes
# longer to start than most tests to run.
function(drvrepo_add_tests name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "OPTIMISED" "TIMEOUT" "SOURCES;LIBRARIES")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 60)
    endif()
    add_executable(test_${name} ${arg_SOURCES})
    drvrepo_settings(test_${name})
    if(NOT arg_OPTIMISED)
        target_compile_options(test_${name} PRIVATE ${DRVREPO_UNMEASURED_OPTIONS})
        target_precompile_headers(test_${name} REUSE_FROM test_support)
    endif()
    target_link_libraries(test_${name}
        PRIVATE ${arg_LIBRARIES} test_support GTest::gmock GTest::gtest_main)
    if(CMAKE_CROSSCOMPILING)
        add_test(NAME ${name} COMMAND test_${name} --gtest_brief=1)
        math(EXPR arg_TIMEOUT "10 * ${arg_TIMEOUT}")
        set_tests_properties(${name} PROPERTIES
            TIMEOUT ${arg_TIMEOUT} COST ${arg_TIMEOUT} LABELS ${name})
        return()
    endif()
    gtest_discover_tests(test_${name}
        TEST_PREFIX ${name}.
        DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT ${arg_TIMEOUT} COST ${arg_TIMEOUT} LABELS ${name})
endfunction()
