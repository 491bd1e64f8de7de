include(CMakePackageConfigHelpers)

install(TARGETS zorv_tools EXPORT zorv_tools_targets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/zorv_tools DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h" PATTERN internal EXCLUDE)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/zorv_tools)
install(EXPORT zorv_tools_targets NAMESPACE zorv_tools:: DESTINATION ${package_folder})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/zorv_tools-config.cmake.in
  ${PROJECT_BINARY_DIR}/zorv_tools-config.cmake INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zorv_tools-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zorv_tools-config.cmake ${PROJECT_BINARY_DIR}/zorv_tools-config-version.cmake
  DESTINATION ${package_folder})
