# Installs headers, the files for find_package and for pkg-config, the label texts and what runs the program.

include(CMakePackageConfigHelpers)

install(DIRECTORY "${PROJECT_SOURCE_DIR}/src/include/" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/mailserver-log")
# Public headers name the platform's types, so the platform's headers come along.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/platform/include/"
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/mailserver-log/platform")

# The mail server's packages put these where it looks for them: texts/<language> into its own texts, and
# texts/platform/<language> into those of the system.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/texts" DESTINATION "${CMAKE_INSTALL_DATADIR}/mailserver-log")

# Those that systemd and rsyslog find by themselves when the prefix is /usr; they name the program there.
set(packaging "${PROJECT_SOURCE_DIR}/packaging")
install(DIRECTORY "${packaging}/systemd/system" DESTINATION "lib/systemd")
install(DIRECTORY "${packaging}/systemd/tmpfiles.d" "${packaging}/systemd/sysusers.d" DESTINATION "lib")
install(DIRECTORY "${packaging}/rsyslog" DESTINATION "${CMAKE_INSTALL_DATADIR}/mailserver-log")

set(package_directory "${CMAKE_INSTALL_LIBDIR}/cmake/mailserver-log")
install(EXPORT mailserver-log-targets NAMESPACE mailserver-log:: DESTINATION "${package_directory}")
configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/mailserver-log-config.cmake.in"
    "${PROJECT_BINARY_DIR}/mailserver-log-config.cmake" INSTALL_DESTINATION "${package_directory}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/mailserver-log-config-version.cmake"
                                 COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/mailserver-log-config.cmake"
              "${PROJECT_BINARY_DIR}/mailserver-log-config-version.cmake"
        DESTINATION "${package_directory}")

# Relative, so that the installed tree may be moved, or installed below another prefix than configured.
file(RELATIVE_PATH prefix_from_pkgconfig "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/mailserver-log.pc.in" "${PROJECT_BINARY_DIR}/mailserver-log.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/mailserver-log.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
