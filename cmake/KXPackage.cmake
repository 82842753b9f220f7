# SPDX-License-Identifier: MIT
# What gets installed, and where hosts find it: find_package(KXFoundation COMPONENTS Core UI Web), or pkg-config's
# KXFoundationCore, KXFoundationUI and KXFoundationWeb. The libraries are install components of those names; what hosts
# are built with is the component Development.

include(CMakePackageConfigHelpers)

set(KX_PACKAGE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/KXFoundation")
set(KX_PKGCONFIG_DIR "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

foreach(component Core UI Web)
    set(targets KXFoundation${component})
    if(component STREQUAL "Web")
        list(APPEND targets KXFoundationAll)
    endif()
    install(TARGETS ${targets}
        EXPORT KXFoundation${component}Targets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT ${component} NAMELINK_COMPONENT Development
        FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT Development
        FILE_SET generated DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT Development)
    install(EXPORT KXFoundation${component}Targets
        NAMESPACE KXFoundation::
        DESTINATION "${KX_PACKAGE_DIR}" COMPONENT Development)
endforeach()

configure_package_config_file(cmake/KXFoundationConfig.cmake.in KXFoundationConfig.cmake
    INSTALL_DESTINATION "${KX_PACKAGE_DIR}")
write_basic_package_version_file(KXFoundationConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/KXFoundationConfig.cmake"
    "${PROJECT_BINARY_DIR}/KXFoundationConfigVersion.cmake"
    DESTINATION "${KX_PACKAGE_DIR}" COMPONENT Development)

# The prefix is counted from the .pc file, so that an installation may be moved.
file(RELATIVE_PATH KX_PKGCONFIG_TO_PREFIX "/${KX_PKGCONFIG_DIR}" "/")
string(REGEX REPLACE "/$" "" KX_PKGCONFIG_TO_PREFIX "${KX_PKGCONFIG_TO_PREFIX}")

# kx_pkg_config(Core|UI|Web DESCRIPTION REQUIRES): what a host needs for one of the libraries.
function(kx_pkg_config component description requires)
    configure_file(cmake/KXFoundation.pc.in KXFoundation${component}.pc @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/KXFoundation${component}.pc"
        DESTINATION "${KX_PKGCONFIG_DIR}" COMPONENT Development)
endfunction()
kx_pkg_config(Core "action routing, page bridge, logger and services, for programs without windows" "Qt6Core >= 6.4")
kx_pkg_config(UI "views, windows, controls, rich text and image tools" "KXFoundationCore = ${PROJECT_VERSION} Qt6Widgets >= 6.4")
kx_pkg_config(Web "the web view host" "KXFoundationUI = ${PROJECT_VERSION}")

if(PROJECT_IS_TOP_LEVEL)
    include(KXDebianPackages)
endif()
