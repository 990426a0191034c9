# The Debian package; scripts/package builds it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tessavo)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The Tessavo developers")
set(CPACK_PACKAGE_CONTACT "The Tessavo developers <developers@tessavo.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "tuning tool for an eight-channel car-audio signal processor")
set(CPACK_PACKAGE_DESCRIPTION
    "Tessavo edits equalizers, crossovers, delays, levels, limiters and routing
of an eight-channel signal processor, shows the response as curves, keeps
settings in files, and sends every change over a serial line so that it is
heard a moment later.

The package holds the window (tessavo), the command line (tessavoctl) and a
simulated target (tessavo-target) to try everything without hardware.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES TRUE)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
install(FILES ${CMAKE_CURRENT_SOURCE_DIR}/linux/lintian-overrides
        DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
        RENAME tessavo)
include(CPack)
