# The parts of an installation: `runtime` is the shared library, `development` is what one builds with.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(MATH_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/math)

install(TARGETS math EXPORT math-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/math DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(EXPORT math-targets NAMESPACE math:: DESTINATION ${MATH_PACKAGE_DIR} COMPONENT development)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/math-config.cmake.in
    ${PROJECT_BINARY_DIR}/math-config.cmake INSTALL_DESTINATION ${MATH_PACKAGE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/math-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/math-config.cmake ${PROJECT_BINARY_DIR}/math-config-version.cmake
    DESTINATION ${MATH_PACKAGE_DIR} COMPONENT development)

# The pkg-config file names its own folder's parents, so that an installation can be moved or staged.
file(RELATIVE_PATH MATH_PC_TO_PREFIX
    "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file(${CMAKE_CURRENT_LIST_DIR}/math.pc.in ${PROJECT_BINARY_DIR}/math.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/math.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# Under the names of the Debian packages, in which every package tells its licence.
set(MATH_RUNTIME_PACKAGE libmath${PROJECT_VERSION_MAJOR})
set(MATH_DEVELOPMENT_PACKAGE libmath-dev)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${MATH_RUNTIME_PACKAGE}
    RENAME copyright COMPONENT runtime)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${MATH_DEVELOPMENT_PACKAGE}
    RENAME copyright COMPONENT development)
install(FILES ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${MATH_DEVELOPMENT_PACKAGE}
    COMPONENT development)

# gdb loads the script that bears the path of a library by itself: here the path that the Debian packages install to.
set(MATH_GDB_AUTO_LOAD ${CMAKE_INSTALL_DATAROOTDIR}/gdb/auto-load/usr/${CMAKE_INSTALL_LIBDIR})
install(FILES ${PROJECT_SOURCE_DIR}/debug/gdb/math_printers.py DESTINATION ${MATH_GDB_AUTO_LOAD}
    RENAME libmath.so.${PROJECT_VERSION}-gdb.py COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/debug/gdb/math_printing DESTINATION ${MATH_GDB_AUTO_LOAD} COMPONENT development
    FILES_MATCHING PATTERN "*.py" PATTERN "__pycache__" EXCLUDE)
