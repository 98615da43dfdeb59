# Installation: the library, its headers, a CMake package (find_package(Quarrix CONFIG)) and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS quarrix EXPORT QuarrixTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/quarrix DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(QUARRIX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Quarrix)
install(EXPORT QuarrixTargets NAMESPACE Quarrix:: DESTINATION ${QUARRIX_CMAKE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/QuarrixConfig.cmake.in
  ${PROJECT_BINARY_DIR}/QuarrixConfig.cmake INSTALL_DESTINATION ${QUARRIX_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuarrixConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QuarrixConfig.cmake ${PROJECT_BINARY_DIR}/QuarrixConfigVersion.cmake
  DESTINATION ${QUARRIX_CMAKE_DIR})

configure_file(${PROJECT_SOURCE_DIR}/cmake/quarrix.pc.in ${PROJECT_BINARY_DIR}/quarrix.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quarrix.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
