# Three components: the library for those who run programs, headers and CMake/pkg-config files for those who
# build them, and the example programs.
include(CMakePackageConfigHelpers)

install(TARGETS zorv_tools EXPORT zorv_tools_targets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/zorv_tools DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
  FILES_MATCHING PATTERN "*.h" PATTERN internal EXCLUDE)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/zorv_tools)
install(EXPORT zorv_tools_targets NAMESPACE zorv_tools:: DESTINATION ${package_folder} COMPONENT development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/zorv_tools-config.cmake.in
  ${PROJECT_BINARY_DIR}/zorv_tools-config.cmake INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zorv_tools-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zorv_tools-config.cmake ${PROJECT_BINARY_DIR}/zorv_tools-config-version.cmake
  DESTINATION ${package_folder} COMPONENT development)

# The prefix is told relative to the file's own place, so that it holds wherever the tree is installed.
file(RELATIVE_PATH pkgconfig_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" pkgconfig_prefix "${pkgconfig_prefix}")
if(OpenCV_VERSION_MAJOR GREATER_EQUAL 4)
  set(pkgconfig_opencv opencv${OpenCV_VERSION_MAJOR})
else()
  set(pkgconfig_opencv opencv)
endif()
# The shared library brings what it needs with it.
set(pkgconfig_definitions "")
set(pkgconfig_libraries "")
if(NOT BUILD_SHARED_LIBS)
  set(pkgconfig_definitions " -DZORV_TOOLS_STATIC")
  set(pkgconfig_libraries " -lopengv")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/zorv_tools.pc.in ${PROJECT_BINARY_DIR}/zorv_tools.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zorv_tools.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)

# The pages link to each other and to the README, so they keep their places; with them the programs and the picture
# that they show.
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${PROJECT_SOURCE_DIR}/CONTRIBUTING.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development
  FILES_MATCHING PATTERN "*.md" PATTERN "snippets/*" PATTERN "images/*.png")
if(ZORV_TOOLS_EXAMPLES)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/data
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zorv_tools/examples COMPONENT examples)
endif()
