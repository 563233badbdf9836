option(QW_WARNINGS_AS_ERRORS "Treat warnings as errors" OFF)
option(QW_BUILD_EXAMPLES "Build the demo host and the simulators" ON)
option(QW_BUILD_BENCH "Build the benchmarks" ON)
option(QW_UNITY "Build each framework in a few large pieces: quicker from scratch" OFF)
option(QW_PRECOMPILE "Read the headers of Qt and the C++ library once: quicker from scratch" OFF)
set(QW_SANITIZER "" CACHE STRING "Sanitizers to build with, with commas: empty, address,undefined or thread")
include(CTest)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

find_program(QW_CCACHE ccache)
if(QW_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Folders differ between checkouts and build trees; the objects do not.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=/ CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros ${QW_CCACHE})
endif()
find_program(QW_MOLD mold)
if(QW_MOLD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_link_options(-fuse-ld=mold)
endif()

if(QW_PRECOMPILE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess) # so that ccache keeps what was compiled with such headers
endif()

if(QW_SANITIZER)
    # Undefined behaviour ends the program, as other faults do, so that its test fails.
    add_compile_options(-fsanitize=${QW_SANITIZER} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${QW_SANITIZER})
endif()

add_library(qw_warnings INTERFACE)
target_compile_options(qw_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    $<$<BOOL:${QW_WARNINGS_AS_ERRORS}>:-Werror>)
target_compile_definitions(qw_warnings INTERFACE QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH QT_USE_QSTRINGBUILDER)
