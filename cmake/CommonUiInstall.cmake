# The install tree: what a host needs to build against CommonUi and to run with it.
include_guard()
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/CommonUi")

install(TARGETS CommonUi CommonFramework CommonFrameworkMain EXPORT CommonUiTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${COMMONUI_RUNTIME_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR})

# Headers keep their paths below the include roots.
foreach(root Library/YUtils/src Library/ui)
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/${root}/" DESTINATION include/CommonUi
        FILES_MATCHING PATTERN "*.h" PATTERN resources EXCLUDE)
endforeach()
install(DIRECTORY "${PROJECT_SOURCE_DIR}/Framework/include/" DESTINATION include/CommonFramework)

install(EXPORT CommonUiTargets NAMESPACE CommonUi:: DESTINATION ${package_folder})
write_basic_package_version_file(CommonUiConfigVersion.cmake COMPATIBILITY SameMinorVersion)
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/CommonUiConfig.cmake.in"
    "${CMAKE_CURRENT_BINARY_DIR}/CommonUiConfig.cmake" INSTALL_DESTINATION ${package_folder})
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/CommonUiConfig.cmake"
    "${CMAKE_CURRENT_BINARY_DIR}/CommonUiConfigVersion.cmake" DESTINATION ${package_folder})
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/CHANGELOG.md" DESTINATION .)
