# What `cmake --install` puts where, and the Debian package of it. scripts/package makes the package
# and tries it.
set(CPACK_PACKAGE_NAME softwareupdater)
set(CMAKE_INSTALL_DOCDIR share/doc/${CPACK_PACKAGE_NAME})
include(GNUInstallDirs)

# Where SOURCE_DATE_EPOCH says a commit's time, its packages are the same to the byte.
string(TIMESTAMP PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(DOCUMENTS ${PROJECT_BINARY_DIR}/packaging)
configure_file(packaging/changelog.in ${DOCUMENTS}/changelog @ONLY)
configure_file(packaging/SoftwareUpdater.1 ${DOCUMENTS}/SoftwareUpdater.1 COPYONLY)
execute_process(COMMAND gzip -9 --no-name --force --keep changelog SoftwareUpdater.1
                WORKING_DIRECTORY ${DOCUMENTS} COMMAND_ERROR_IS_FATAL ANY)

install(TARGETS SoftwareUpdater)
install(FILES ${DOCUMENTS}/SoftwareUpdater.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES src/app/org.merivon.softwareUpdater.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/interfaces)
install(FILES packaging/copyright packaging/README.md ${DOCUMENTS}/changelog.gz TYPE DOC)
install(FILES packaging/softwareupdater.service DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)

set(CPACK_GENERATOR DEB)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "quillmark <softwareupdater@quillmark.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "on-device software updater of a beverage dispenser")
set(CPACK_PACKAGE_DESCRIPTION
    "Full-screen touch program with which a service technician puts new platform
software onto the dispenser from a USB stick, goes back to an earlier version,
deletes old versions and flashes the controller's firmware.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
if(CMAKE_LIBRARY_ARCHITECTURE STREQUAL "arm-linux-gnueabihf") # it would take the building machine's
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)
endif()
# The libraries are found in the program. The modules that its scene imports are seen by no tool.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "qml-module-qtquick2 (>= 5.15), qml-module-qtquick-templates2 (>= 5.15)")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "default-dbus-session-bus | dbus-session-bus, fonts-dejavu-core")
include(CPack)
