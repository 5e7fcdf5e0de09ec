# What `cmake --install` leaves: libraries, public headers, programs, the install root, and the package
# files behind find_package(VOZDravo).
include(CMakePackageConfigHelpers)

get_property(voz_modules GLOBAL PROPERTY VOZ_MODULES)
get_property(voz_header_dirs GLOBAL PROPERTY VOZ_PUBLIC_HEADER_DIRS)

install(TARGETS ${voz_modules} EXPORT VOZDravoTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(dir IN LISTS voz_header_dirs)
  install(DIRECTORY ${dir}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/VOZDravo FILES_MATCHING PATTERN "*.h")
endforeach()
install(DIRECTORY InstallRoot/ DESTINATION ${CMAKE_INSTALL_DATADIR}/vozdravo)
install(EXPORT VOZDravoTargets NAMESPACE VOZDravo:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VOZDravo)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/VOZDravoConfigVersion.cmake COMPATIBILITY SameMinorVersion)
configure_package_config_file(cmake/VOZDravoConfig.cmake.in ${CMAKE_BINARY_DIR}/VOZDravoConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VOZDravo)
install(FILES ${CMAKE_BINARY_DIR}/VOZDravoConfig.cmake ${CMAKE_BINARY_DIR}/VOZDravoConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VOZDravo)

# The prefix is known when the installation runs (cmake --install --prefix), so the pkg-config file finds it from its own place.
file(RELATIVE_PATH voz_prefix_from_pc ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/vozdravo.pc.in ${CMAKE_BINARY_DIR}/vozdravo.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/vozdravo.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
