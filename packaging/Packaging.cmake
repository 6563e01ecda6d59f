# The Debian package: `cpack -G DEB` in a build folder makes vellum_<version>_<arch>.deb with
# the programs, the link to the SQLite library the SQLite export opens at run time, the desktop
# entry, MIME type and icon (installed by src/app), an AppStream metainfo file and the manual
# page of vellum-cli (written from its help texts at build time).

set(VELLUM_MAN_PAGE ${CMAKE_BINARY_DIR}/man/vellum-cli.1)
add_custom_command(
  OUTPUT ${VELLUM_MAN_PAGE}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/man
  COMMAND ${CMAKE_COMMAND} -DCLI=$<TARGET_FILE:vellum-cli> -DVERSION=${PROJECT_VERSION}
          -DOUTPUT=${VELLUM_MAN_PAGE} -P ${CMAKE_CURRENT_LIST_DIR}/vellumCliManPage.cmake
  DEPENDS vellum-cli vellum-loader ${CMAKE_CURRENT_LIST_DIR}/vellumCliManPage.cmake
  COMMENT "Writing the manual page of vellum-cli")
add_custom_target(vellum-cli-manpage ALL DEPENDS ${VELLUM_MAN_PAGE})
install(FILES ${VELLUM_MAN_PAGE} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

if(TARGET vellum)
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/io.github.vellum.Vellum.metainfo.xml
          DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
endif()

set(CPACK_PACKAGE_NAME vellum)
set(CPACK_PACKAGE_VENDOR "Vellum")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "viewer and converter for Microsoft Access databases")
set(CPACK_PACKAGE_DESCRIPTION
    "Vellum opens Microsoft Access files (.mdb, .accdb) read-only and shows their tables,\n\
columns, indexes, relationships and saved queries; it exports tables to CSV, text,\n\
XML, SQL scripts, SQLite databases and Excel workbooks. vellum-cli does the same\n\
from the command line.")
set(CPACK_PACKAGE_CONTACT "Vellum developers <vellum@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT) # vellum_<version>_<arch>.deb
set(CPACK_DEBIAN_PACKAGE_SECTION database)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The linked libraries' packages come from dpkg-shlibdeps; what is loaded at run time is named
# here: SQLCipher (dlopen), Qt's platform and image plugins, the MIME database.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libsqlcipher0, shared-mime-info")
if(TARGET vellum)
  string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", qt6-qpa-plugins, qt6-image-formats-plugins, libqt6svg6")
endif()
include(CPack)
