# Installing the executable, the shared library with its header, a pkg-config
# file and a CMake package, so that other programs can build against it. The
# build tree is a package too: point trelvane_DIR at it.
include(CMakePackageConfigHelpers)

set(TRELVANE_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/trelvane)

install(TARGETS trelvane_cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS trelvane EXPORT trelvaneTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES include/trelvane.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(EXPORT trelvaneTargets NAMESPACE trelvane:: DESTINATION ${TRELVANE_PACKAGE_DIR})
export(EXPORT trelvaneTargets NAMESPACE trelvane:: FILE ${PROJECT_BINARY_DIR}/trelvaneTargets.cmake)
configure_file(cmake/trelvaneConfig.cmake.in ${PROJECT_BINARY_DIR}/trelvaneConfig.cmake COPYONLY)
# Versions with the same soname are compatible.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/trelvaneConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/trelvaneConfig.cmake ${PROJECT_BINARY_DIR}/trelvaneConfigVersion.cmake
  DESTINATION ${TRELVANE_PACKAGE_DIR})

# The pkg-config file finds the prefix from its own place, so the installed
# tree can be moved (or installed with --prefix) as a whole.
file(RELATIVE_PATH TRELVANE_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/trelvane.pc.in ${PROJECT_BINARY_DIR}/trelvane.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/trelvane.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
