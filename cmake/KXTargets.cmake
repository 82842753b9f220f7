# SPDX-License-Identifier: MIT
# How every target of the project is compiled, and how the three libraries are put together.

include(GenerateExportHeader)

find_program(KX_CCACHE ccache)
if(KX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Precompiled headers need these two relaxations to be cached at all.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${KX_CCACHE})
endif()

set(KX_INCLUDE_DIR "${PROJECT_BINARY_DIR}/include") # generated headers, same layout as the source tree

# kx_compile_settings(target): language level, warnings and Qt's strict mode.
function(kx_compile_settings target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        AUTOMOC ON
        AUTORCC ON)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2
        $<$<BOOL:${KX_WARNINGS_AS_ERRORS}>:-Werror>)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # A precompiled header is passed with -fpch-preprocess so that ccache can follow it.
        target_compile_options(${target} PRIVATE -fpch-preprocess)
    endif()
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
        QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_JAVA_STYLE_ITERATORS QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
        QT_USE_QSTRINGBUILDER QT_DISABLE_DEPRECATED_BEFORE=0x060400)
endfunction()

# kx_add_library(Core|UI|Web DEPENDS targets... PRECOMPILE headers...): one of the shared objects,
# KXFoundation::<component>.
function(kx_add_library component)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "DEPENDS;PRECOMPILE")
    set(target KXFoundation${component})
    string(TOUPPER ${component} upper)
    add_library(${target} SHARED)
    add_library(KXFoundation::${component} ALIAS ${target})
    kx_compile_settings(${target})
    target_link_libraries(${target} PUBLIC ${arg_DEPENDS})
    target_precompile_headers(${target} PRIVATE ${arg_PRECOMPILE})
    generate_export_header(${target}
        BASE_NAME KX_${upper}
        EXPORT_FILE_NAME "${KX_INCLUDE_DIR}/KXFoundation/KX${component}Export.h")
    target_sources(${target} PUBLIC
        FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}"
        FILE_SET generated TYPE HEADERS BASE_DIRS "${KX_INCLUDE_DIR}"
        FILES "${KX_INCLUDE_DIR}/KXFoundation/KX${component}Export.h")
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${component}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "$ORIGIN" # the libraries find each other wherever they are installed together
        VERIFY_INTERFACE_HEADER_SETS ON)
endfunction()

# kx_sources(Core|UI|Web HEADERS ... PRIVATE_HEADERS ... SOURCES ...): what the calling folder adds to a library.
# HEADERS are public: installed, and each compiled alone by the target all_verify_interface_header_sets.
function(kx_sources component)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;PRIVATE_HEADERS;SOURCES")
    set(target KXFoundation${component})
    list(TRANSFORM arg_HEADERS PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
    list(TRANSFORM arg_PRIVATE_HEADERS PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
    list(TRANSFORM arg_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
    target_sources(${target} PRIVATE ${arg_SOURCES} ${arg_PRIVATE_HEADERS})
    if(arg_HEADERS)
        target_sources(${target} PUBLIC FILE_SET HEADERS FILES ${arg_HEADERS})
        # Automoc looks at private sources only, not at header sets.
        target_sources(${target} PRIVATE ${arg_HEADERS})
    endif()
endfunction()
