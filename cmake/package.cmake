# What is installed, and the Debian package.
include(CMakePackageConfigHelpers)

install(TARGETS kepse9 kepcore EXPORT keps-targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
# An installed library finds its companion beside itself, wherever the prefix lies.
set_target_properties(kepse9 PROPERTIES INSTALL_RPATH "$ORIGIN")
install(FILES ${KEPS_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)

# find_package(keps) gives the targets keps::kepse9 and keps::kepcore.
set(packageDir ${CMAKE_INSTALL_LIBDIR}/cmake/keps)
install(EXPORT keps-targets NAMESPACE keps:: DESTINATION ${packageDir})
configure_package_config_file(cmake/keps-config.cmake.in ${PROJECT_BINARY_DIR}/keps-config.cmake
  INSTALL_DESTINATION ${packageDir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/keps-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/keps-config.cmake ${PROJECT_BINARY_DIR}/keps-config-version.cmake
  DESTINATION ${packageDir})

# The prefix of the pkg-config files is told from where they lie, so an installed tree can move.
file(RELATIVE_PATH upToPrefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" upToPrefix "${upToPrefix}")
foreach(file keps.pc kepcore.pc)
  configure_file(cmake/${file}.in ${PROJECT_BINARY_DIR}/${file} @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME keps)
set(CPACK_PACKAGE_CONTACT "The keps developers <keps@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES OFF)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
# Dependencies are read off the libraries themselves, one of which needs the other.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
include(CPack)
