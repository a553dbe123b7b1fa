include(CMakePackageConfigHelpers)

set(_config_dir "${CMAKE_INSTALL_LIBDIR}/cmake/vesk")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/vesk-config.cmake.in"
    "${PROJECT_BINARY_DIR}/vesk-config.cmake" INSTALL_DESTINATION "${_config_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/vesk-config-version.cmake"
    VERSION ${PROJECT_VERSION} COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/vesk-config.cmake" "${PROJECT_BINARY_DIR}/vesk-config-version.cmake"
    DESTINATION "${_config_dir}")
if(VESK_USD_PROVIDER_FOUND STREQUAL "subset")
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/cmake/refuse-pxr" DESTINATION "${_config_dir}")
endif()
install(EXPORT vesk-targets NAMESPACE vesk:: DESTINATION "${_config_dir}")
