include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(MATH_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/math)

install(TARGETS math EXPORT math-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/math DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT math-targets NAMESPACE math:: DESTINATION ${MATH_PACKAGE_DIR})

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/math-config.cmake.in
    ${PROJECT_BINARY_DIR}/math-config.cmake INSTALL_DESTINATION ${MATH_PACKAGE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/math-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/math-config.cmake ${PROJECT_BINARY_DIR}/math-config-version.cmake
    DESTINATION ${MATH_PACKAGE_DIR})

# The pkg-config file names its own folder's parents, so that an installation can be moved or staged.
file(RELATIVE_PATH MATH_PC_TO_PREFIX
    "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file(${CMAKE_CURRENT_LIST_DIR}/math.pc.in ${PROJECT_BINARY_DIR}/math.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/math.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
