# cmake --install: headers, both libraries, the tool, a CMake package, a pkg-config file and the licence.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/bcast)

install(TARGETS bcast bcast_embedded bcast_with_services EXPORT bcast_targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/bcast DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY services DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/bcast FILES_MATCHING PATTERN "*.h")
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
if(BCAST_BUILD_TOOL)
  install(TARGETS bcast_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT bcast_targets NAMESPACE bcast:: FILE bcastTargets.cmake DESTINATION ${package_dir})
configure_package_config_file(cmake/bcastConfig.cmake.in ${PROJECT_BINARY_DIR}/bcastConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/bcastConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/bcastConfig.cmake ${PROJECT_BINARY_DIR}/bcastConfigVersion.cmake
  DESTINATION ${package_dir})

# A prefix that is found from where the file lies, so that an installed tree can be moved.
file(RELATIVE_PATH pc_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" pc_to_prefix ${pc_to_prefix})
configure_file(cmake/bcast.pc.in ${PROJECT_BINARY_DIR}/bcast.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/bcast.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
