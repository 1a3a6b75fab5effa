# SPDX-License-Identifier: MIT
# How every target of ours is compiled, stated once.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    # Precompiled headers carry time stamps that ccache must be told to overlook;
    # the base folder lets several checkouts share their results.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_COMMAND}" -E env
        "CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime"
        "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}"
        "CCACHE_NOHASHDIR=1"
        "${CCACHE_PROGRAM}")
endif()

function(vantle_configure_target target)
    set_target_properties(${target} PROPERTIES
        CXX_STANDARD 20
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        AUTOMOC ON
        AUTOUIC ON
        AUTORCC ON)
    target_compile_definitions(${target} PRIVATE
        QT_NO_KEYWORDS
        QT_NO_CAST_FROM_ASCII
        QT_NO_CAST_TO_ASCII
        QT_NO_URL_CAST_FROM_STRING
        QT_USE_QSTRINGBUILDER
        QT_DISABLE_DEPRECATED_BEFORE=0x060400)
    # GLib asks it of those who use it; the precompiled headers fit where all have it.
    target_compile_options(${target} PRIVATE -pthread)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
    if(VANTLE_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(VANTLE_SANITIZERS)
        target_compile_options(${target} PRIVATE
            "-fsanitize=${VANTLE_SANITIZERS}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE "-fsanitize=${VANTLE_SANITIZERS}")
    endif()
    if(CCACHE_PROGRAM)
        target_compile_options(${target} PRIVATE -fpch-preprocess)
    endif()
endfunction()

# Precompiles a set of headers for all targets that name it to vantle_precompile. They are
# found through the include path: a full path in the generated header would differ between
# checkouts, and ccache would share nothing of what is compiled with it.
function(vantle_add_precompiled set)
    string(TOLOWER "vantle_precompiled_${set}" target)
    add_library(${target} OBJECT "${PROJECT_SOURCE_DIR}/cmake/Precompiled.cpp")
    vantle_configure_target(${target})
    target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/cmake")
    target_link_libraries(${target} PRIVATE ${ARGN})
    target_precompile_headers(${target} PRIVATE "<${set}Precompiled.h>")
endfunction()

# Compiles a target with a set of precompiled headers: Core, Widgets or Test. The compiler
# takes them only where its options are the same as theirs, and its warnings say where not.
function(vantle_precompile target set)
    string(TOLOWER "vantle_precompiled_${set}" precompiled)
    target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/cmake")
    target_precompile_headers(${target} REUSE_FROM ${precompiled})
endfunction()

# A room of the house: a static library whose public include path is its own
# folder, so that whoever links it may include its headers, and nobody else.
# PCH names the set of headers to precompile: Core or Widgets.
function(vantle_add_room target)
    cmake_parse_arguments(ARG "" "PCH" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(${target} STATIC ${ARG_SOURCES})
    vantle_configure_target(${target})
    target_include_directories(${target} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${target} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
    if(ARG_PCH)
        vantle_precompile(${target} ${ARG_PCH})
    endif()
endfunction()
