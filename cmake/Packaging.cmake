# Installation as a desktop program, and the Debian package: `make package` (cpack in a Release
# tree). Nothing here runs during an ordinary build: the rules act only on install and cpack.
#
# Installed: the two programs, the menu entry and its icon, the software centres' description
# (AppStream metainfo), a manual page for each program, the copyright and the changelog, and the
# demo course under share/tallory, which the program copies into ~/Tallory/Classes on its first
# start from the menu. The program finds that folder beside itself (../share/tallory), so the
# prefix is not compiled in.
include(GNUInstallDirs)

set(TALLORY_PACKAGING_DIR ${PROJECT_SOURCE_DIR}/packaging)

install(TARGETS tallory-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(TARGET tallory)
  install(TARGETS tallory RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(FILES ${TALLORY_PACKAGING_DIR}/tallory.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${TALLORY_PACKAGING_DIR}/org.tallory.tallory.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${TALLORY_PACKAGING_DIR}/icons/tallory.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(DIRECTORY ${TALLORY_PACKAGING_DIR}/icons/hicolor/
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor
        FILES_MATCHING PATTERN "*.png")

# Manual pages and the changelog go in compressed, as the system keeps them; compressed when
# installing, so that a build that installs nothing does no work for them.
set(TALLORY_MAN_PAGES man/tallory.1 man/tallory-cli.1)
set(TALLORY_GZIP_BUILD_DIR ${PROJECT_BINARY_DIR}/packaging)
install(CODE "
  file(MAKE_DIRECTORY \"${TALLORY_GZIP_BUILD_DIR}/man\")
  foreach(file ${TALLORY_MAN_PAGES} changelog)
    execute_process(COMMAND gzip -9nc \"${TALLORY_PACKAGING_DIR}/\${file}\"
                    OUTPUT_FILE \"${TALLORY_GZIP_BUILD_DIR}/\${file}.gz\"
                    RESULT_VARIABLE failed)
    if(failed)
      message(FATAL_ERROR \"gzip of \${file} failed\")
    endif()
  endforeach()")
foreach(page ${TALLORY_MAN_PAGES})
  install(FILES ${TALLORY_GZIP_BUILD_DIR}/${page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()
install(FILES ${TALLORY_GZIP_BUILD_DIR}/changelog.gz ${TALLORY_PACKAGING_DIR}/copyright
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tallory)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/demo-course
        DESTINATION ${CMAKE_INSTALL_DATADIR}/tallory)
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tallory)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tallory)
set(CPACK_PACKAGE_VENDOR "Tallory")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "grade book for classroom clickers")
# Lines of at most 80 characters, as Debian's tools show them.
string(JOIN "\n" CPACK_PACKAGE_DESCRIPTION
  "Tallory reads the session logs that classroom clicker polling leaves in a"
  "course folder, scores every student per session and shows a grid of"
  "students by sessions. It sets points per question, fixes clicker"
  "registrations, exports grades for course-management systems and writes"
  "HTML reports. The package holds the desktop program tallory and"
  "tallory-cli, the same grade book for scripts.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_CONTACT "Tallory maintainers <maintainers@tallory.invalid>")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION education)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The libraries the programs link (Qt 6, the C++ runtime, libcurl when linked) are found by
# dpkg-shlibdeps. libcurl is named besides, because the web registration may load it only when it
# first fetches, where dpkg-shlibdeps cannot see it.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libcurl4")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "man-db")
include(CPack)
