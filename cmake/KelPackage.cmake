# `find_package(KelWidgets)` for projects that build against the installed tree.

include(CMakePackageConfigHelpers)
set(KEL_CONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/KelWidgets)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/KelWidgetsConfig.cmake.in
    ${PROJECT_BINARY_DIR}/KelWidgetsConfig.cmake INSTALL_DESTINATION ${KEL_CONFIG_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KelWidgetsConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)

install(EXPORT KelWidgetsTargets NAMESPACE Kel:: DESTINATION ${KEL_CONFIG_DIR})
install(FILES ${PROJECT_BINARY_DIR}/KelWidgetsConfig.cmake ${PROJECT_BINARY_DIR}/KelWidgetsConfigVersion.cmake
    DESTINATION ${KEL_CONFIG_DIR})
install(FILES README.md LICENSE CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
