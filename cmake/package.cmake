# Debian packages, made by cpack from the components of install.cmake.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zorv-tools)
set(CPACK_PACKAGE_VENDOR "zorv_tools")
set(CPACK_PACKAGE_CONTACT "zorv_tools developers <zorv-tools@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development examples)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)

set(runtime_package libzorv-tools${PROJECT_VERSION_MAJOR})
set(no_licence "No licence has been chosen yet.")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Computer-vision tools, shared library\n${no_licence}")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzorv-tools-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${runtime_package} (= ${PROJECT_VERSION}), libopencv-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "Computer-vision tools, headers and build files\n${no_licence}")

set(CPACK_DEBIAN_EXAMPLES_PACKAGE_NAME zorv-tools-examples)
set(CPACK_DEBIAN_EXAMPLES_PACKAGE_SECTION science)
set(CPACK_DEBIAN_EXAMPLES_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_EXAMPLES_DESCRIPTION "Computer-vision tools, example programs\n${no_licence}")

include(CPack)
