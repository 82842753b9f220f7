# SPDX-License-Identifier: MIT
# What gets installed, and the CMake package: find_package(KXFoundation COMPONENTS Core UI Web).

include(CMakePackageConfigHelpers)

set(KX_PACKAGE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/KXFoundation")

foreach(component Core UI Web)
    set(targets KXFoundation${component})
    if(component STREQUAL "Web")
        list(APPEND targets KXFoundationAll)
    endif()
    install(TARGETS ${targets}
        EXPORT KXFoundation${component}Targets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT ${component}
        FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT ${component}
        FILE_SET generated DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT ${component})
    install(EXPORT KXFoundation${component}Targets
        NAMESPACE KXFoundation::
        DESTINATION "${KX_PACKAGE_DIR}" COMPONENT ${component})
endforeach()

configure_package_config_file(cmake/KXFoundationConfig.cmake.in KXFoundationConfig.cmake
    INSTALL_DESTINATION "${KX_PACKAGE_DIR}")
write_basic_package_version_file(KXFoundationConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/KXFoundationConfig.cmake"
    "${PROJECT_BINARY_DIR}/KXFoundationConfigVersion.cmake"
    DESTINATION "${KX_PACKAGE_DIR}" COMPONENT Core)
