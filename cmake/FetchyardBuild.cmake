# One place for what every target shares: language level, warnings, sanitizers, output folders.
include(CTest)
# On Linux the libraries lie in the folder of their architecture whatever the prefix, if the system has such folders: one
# build makes the packages and is installed by hand.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND CMAKE_LIBRARY_ARCHITECTURE
   AND (NOT DEFINED CMAKE_INSTALL_LIBDIR OR CMAKE_INSTALL_LIBDIR STREQUAL "lib"))
    set(CMAKE_INSTALL_LIBDIR "lib/${CMAKE_LIBRARY_ARCHITECTURE}" CACHE PATH "where libraries lie below the prefix" FORCE)
endif()
include(GNUInstallDirs)
# To install, or to make packages, takes no tests.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

option(FETCHYARD_VIDEO "read and write videos with FFmpeg and libass" ON)
if(NOT FETCHYARD_VIDEO)
    message(STATUS "Built without video: MultimediaComm and ZellPlayback refuse to convert, stamp and play; the station "
                   "neither seeds, imports nor cuts recordings")
endif()
option(FETCHYARD_FUZZ "make libFuzzer programs of the fuzz targets; wants Clang" OFF)
set(FETCHYARD_SANITIZER "" CACHE STRING "address (with undefined), thread, or empty")

# Paths in the commands count from the tree, so that clones share what was compiled; precompiled headers need the
# two slack settings.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros "${CCACHE_PROGRAM}")
    set(CMAKE_C_COMPILER_LAUNCHER "${CMAKE_CXX_COMPILER_LAUNCHER}")
endif()

# A DLL has the plain name of its library, and lies beside the programs, as its plug-ins do below them.
set(FETCHYARD_PLUGIN_FOLDER "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/plugins")
if(WIN32)
    set(CMAKE_SHARED_LIBRARY_PREFIX "")
    set(FETCHYARD_PLUGIN_FOLDER "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/plugins")
endif()

add_library(fetchyard_options INTERFACE)
if(WIN32)
    target_compile_definitions(fetchyard_options INTERFACE NOMINMAX _WIN32_WINNT=0x0A00)
endif()
if(MSVC)
    target_compile_options(fetchyard_options INTERFACE /W4 /WX /utf-8 /permissive-)
    target_compile_definitions(fetchyard_options INTERFACE _CRT_SECURE_NO_WARNINGS)
else()
    target_compile_options(fetchyard_options INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual -Wformat=2
        -Wnull-dereference -Werror "-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=")
    # A function that hands its own format on is told by its attribute; Clang asks it of local ones too.
    target_compile_options(fetchyard_options INTERFACE $<$<CXX_COMPILER_ID:Clang>:-Wno-format-nonliteral>)
    # Inlining makes this one report paths inside the standard library that cannot be reached.
    target_compile_options(fetchyard_options INTERFACE $<$<CONFIG:Release>:-Wno-null-dereference>)
    target_link_options(fetchyard_options INTERFACE $<$<PLATFORM_ID:Linux>:-Wl,--no-undefined>)
endif()
if(FETCHYARD_SANITIZER STREQUAL "address")
    set(fetchyard_sanitizer_flags -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    # In the tests' own code the checks for undefined behaviour would take a fifth of the compiler's time.
    define_property(TARGET PROPERTY FETCHYARD_TEST_CODE INITIALIZE_FROM_VARIABLE FETCHYARD_TEST_CODE)
    set(fetchyard_sanitizer_spares $<$<BOOL:$<TARGET_PROPERTY:FETCHYARD_TEST_CODE>>:-fno-sanitize=undefined>)
elseif(FETCHYARD_SANITIZER STREQUAL "thread")
    set(fetchyard_sanitizer_flags -fsanitize=thread -fno-omit-frame-pointer)
endif()
if(FETCHYARD_FUZZ)
    list(APPEND fetchyard_sanitizer_flags -fsanitize=fuzzer-no-link "-fsanitize-ignorelist=${CMAKE_SOURCE_DIR}/tests/fuzz/others.txt")
endif()
if(fetchyard_sanitizer_flags)
    # The checks that a sanitizer inserts make GCC see paths on which a value of the standard library is unset.
    set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g1")
    # A sanitized library leaves its runtime to the program, so it has undefined symbols of its own.
    target_compile_options(fetchyard_options INTERFACE
        ${fetchyard_sanitizer_flags} ${fetchyard_sanitizer_spares} -Wno-null-dereference
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(fetchyard_options INTERFACE ${fetchyard_sanitizer_flags} -Wl,--undefined-version -Wl,-z,undefs)
    target_compile_definitions(fetchyard_options INTERFACE FETCHYARD_SANITIZED=1)
endif()

# fetchyard_sibling(NAME SOURCES ... [PRIVATE libs...] [PUBLIC libs...] [HOST_HEADERS])
# A shared library of one closed library's name: the declarations come from interfaces/NAME, the folder
# host/ beside the sources holds headers for the client program and for other siblings (never for the
# business layer), and NAME_BUILD (upper case) switches its export macro.
function(fetchyard_sibling name)
    cmake_parse_arguments(arg "" "" "SOURCES;PRIVATE;PUBLIC" ${ARGN})
    add_library(${name} SHARED ${arg_SOURCES})
    string(TOUPPER ${name} upper)
    target_compile_definitions(${name} PRIVATE ${upper}_BUILD)
    target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
    if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/host")
        target_include_directories(${name} PUBLIC
            $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/host> $<INSTALL_INTERFACE:include/fetchyard-host>)
        install(DIRECTORY host/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/fetchyard-host COMPONENT development)
    endif()
    target_link_libraries(${name} PUBLIC fetchyard_interfaces ${arg_PUBLIC} PRIVATE fetchyard_options ${arg_PRIVATE})
    set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN")
    install(TARGETS ${name} EXPORT FetchyardTargets COMPONENT library
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/fetchyard RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}/fetchyard)
endfunction()

# fetchyard_plugin(NAME SOURCES ... LIBS ...): a module that the client loads while it runs, beside the libraries in
# "plugins/".
function(fetchyard_plugin name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS" ${ARGN})
    add_library(${name} MODULE ${arg_SOURCES})
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
    target_link_libraries(${name} PRIVATE fetchyard_interfaces fetchyard_options ${arg_LIBS})
    set_target_properties(${name} PROPERTIES
        PREFIX "" LIBRARY_OUTPUT_DIRECTORY "${FETCHYARD_PLUGIN_FOLDER}" INSTALL_RPATH "$ORIGIN/..")
    if(WIN32)
        install(TARGETS ${name} LIBRARY DESTINATION ${CMAKE_INSTALL_BINDIR}/plugins COMPONENT library)
    else()
        install(TARGETS ${name} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/fetchyard/plugins COMPONENT library)
    endif()
endfunction()

# fetchyard_test(NAME SOURCES ... LIBS ... [LABELS unit...] [ENVIRONMENT ...] [TIMEOUT seconds] [ONE_THREAD]
# [WITH_FAKES] [EACH_ALONE]): a GoogleTest program, one CTest entry for each of its tests. ONE_THREAD: there is nothing
# in it for ThreadSanitizer, whose build leaves it out. WITH_FAKES: it runs with the fakes of tests/fakes, and lies beside
# them where that is how libraries are found. Under an emulator or a sanitizer, to start takes longer than most tests
# run: what is no system test is one entry there, but for EACH_ALONE, whose tests take long or a process of their own.
function(fetchyard_test name)
    cmake_parse_arguments(arg "ONE_THREAD;WITH_FAKES;EACH_ALONE" "TIMEOUT" "SOURCES;LIBS;LABELS;ENVIRONMENT" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}" "${CMAKE_SOURCE_DIR}")
    target_link_libraries(${name} PRIVATE fetchyard_options ${arg_LIBS} GTest::gmock GTest::gtest_main)
    if(WIN32 AND arg_WITH_FAKES)
        # The business layer is part of the program, nothing that it imports.
        target_compile_definitions(${name} PRIVATE FETCHYARDBUSSINESS_BUILD)
        set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/fakes")
    endif()
    list(LENGTH arg_SOURCES source_count)
    if(source_count GREATER 3)
        target_precompile_headers(${name} PRIVATE <gmock/gmock.h> <gtest/gtest.h> <memory> <string> <thread> <vector>)
    endif()
    if(arg_ONE_THREAD AND FETCHYARD_SANITIZER STREQUAL "thread")
        set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL TRUE)
        return()
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 300)
    endif()
    # Discovery drops an empty list, and the next property's name with it.
    if(NOT arg_LABELS)
        set(arg_LABELS unit)
    endif()
    set(environment "QT_QPA_PLATFORM=offscreen;${arg_ENVIRONMENT}")
    if(CMAKE_CROSSCOMPILING OR (FETCHYARD_SANITIZER AND NOT arg_EACH_ALONE AND NOT arg_LABELS STREQUAL "system"))
        add_test(NAME ${name} COMMAND ${name})
        set_tests_properties(${name} PROPERTIES TIMEOUT 900 LABELS "${arg_LABELS}" ENVIRONMENT "${environment}")
        return()
    endif()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 120 DISCOVERY_MODE PRE_TEST
        PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${arg_LABELS}"
        ENVIRONMENT "${environment}")
endfunction()

# fetchyard_tells(SOURCES ... DEFINITIONS ...): what only these sources of this folder are told. A path of the tree differs
# from clone to clone, and ccache shares only what was compiled with the same words.
function(fetchyard_tells)
    cmake_parse_arguments(arg "" "" "SOURCES;DEFINITIONS" ${ARGN})
    set_property(SOURCE ${arg_SOURCES} APPEND PROPERTY COMPILE_DEFINITIONS ${arg_DEFINITIONS})
endfunction()

# A folder of the tree that has its CMakeLists.txt already.
macro(fetchyard_add_if_there folder)
    if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/CMakeLists.txt")
        add_subdirectory(${folder})
    endif()
endmacro()

# fetchyard_compiles_fast(): what this folder makes is compiled more often than it runs, or its own work is little beside
# what it waits for: what counts is how long the compiler takes.
macro(fetchyard_compiles_fast)
    add_compile_options($<$<CXX_COMPILER_ID:GNU,Clang>:-O0>)
endmacro()

# fetchyard_forgives_others(PROGRAM): what other people's libraries never give back, or guard in a way that a sanitizer
# does not see, is no finding.
function(fetchyard_forgives_others program)
    if(FETCHYARD_SANITIZER STREQUAL "address")
        target_sources(${program} PRIVATE "${CMAKE_SOURCE_DIR}/cmake/LeakSuppressions.cpp")
    elseif(FETCHYARD_SANITIZER STREQUAL "thread")
        target_sources(${program} PRIVATE "${CMAKE_SOURCE_DIR}/cmake/RaceSuppressions.cpp")
    endif()
endfunction()
