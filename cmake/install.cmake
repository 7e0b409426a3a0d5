# What an install tree holds: the library, the command, the public headers, and the two ways to find
# them. The units service is installed from its own folder.

include(CMakePackageConfigHelpers)

install(TARGETS halvern EXPORT HalvernTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS halvern_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Halvern)
install(EXPORT HalvernTargets NAMESPACE Halvern:: DESTINATION ${package_folder})
configure_package_config_file(cmake/HalvernConfig.cmake.in
  ${PROJECT_BINARY_DIR}/generated/HalvernConfig.cmake
  INSTALL_DESTINATION ${package_folder})
# Before 1.0 a new minor version may change the interfaces.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/generated/HalvernConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/generated/HalvernConfig.cmake
  ${PROJECT_BINARY_DIR}/generated/HalvernConfigVersion.cmake
  DESTINATION ${package_folder})

# Relative, so that the install tree may be moved.
file(RELATIVE_PATH include_from_pkgconfig
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(cmake/halvern.pc.in ${PROJECT_BINARY_DIR}/generated/halvern.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/generated/halvern.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
