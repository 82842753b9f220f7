# SPDX-License-Identifier: MIT
# One Debian package for each install component, made by `cpack`. See docs/package.md.

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
if(NOT CPACK_DEBIAN_DEBUGINFO_PACKAGE) # which takes the symbols off by itself
    set(CPACK_STRIP_FILES ON)
endif()
if(NOT DEFINED CPACK_PACKAGE_CONTACT)
    set(CPACK_PACKAGE_CONTACT "The KXFoundation developers <maintainers@kxfoundation.invalid>")
endif()
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

# Packages of other projects get "at least this version": within one SOVERSION nothing is taken away.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/KXFoundation")

# kx_debian_package(COMPONENT NAME SECTION SUMMARY DEPENDS components...)
macro(kx_debian_package component name section summary)
    cmake_parse_arguments(arg "" "" "DEPENDS" ${ARGN})
    string(TOUPPER ${component} upper)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    set(CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}")
    set(CPACK_COMPONENT_${upper}_DEPENDS ${arg_DEPENDS})
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    install(FILES LICENSE RENAME copyright
        DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/${name}" COMPONENT ${component} EXCLUDE_FROM_ALL)
endmacro()

set(abi ${PROJECT_VERSION_MAJOR})
kx_debian_package(Core libkxfoundation-core${abi} libs
    "foundation of desktop video players: actions, page bridge, logger, services")
kx_debian_package(UI libkxfoundation-ui${abi} libs
    "foundation of desktop video players: views, windows, controls" DEPENDS Core)
kx_debian_package(Web libkxfoundation-web${abi} libs
    "foundation of desktop video players: web view host" DEPENDS Core UI)
kx_debian_package(Development libkxfoundation-dev libdevel
    "foundation of desktop video players: headers, CMake package, pkg-config" DEPENDS Core UI Web)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "qt6-base-dev (>= 6.4)")
if(KX_BUILD_DESIGNER)
    kx_debian_package(Designer kxfoundation-designer devel
        "foundation of desktop video players: controls for Qt Designer" DEPENDS UI Web)
endif()

# Opened at run time, by its version, so dpkg-shlibdeps does not see it.
if(KX_LIBAVFORMAT_INCLUDE_DIR)
    file(STRINGS "${KX_LIBAVFORMAT_INCLUDE_DIR}/libavformat/version_major.h" version REGEX "define LIBAVFORMAT_VERSION_MAJOR")
    string(REGEX MATCH "[0-9]+$" version "${version}")
    set(CPACK_DEBIAN_CORE_PACKAGE_RECOMMENDS "libavformat${version}")
endif()

include(CPack)
