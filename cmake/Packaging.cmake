# Installation as a desktop program, and the Debian package: `make package` (cpack in a Release
# tree). Nothing here runs during an ordinary build: the rules act only on install and cpack.
#
# Installed: the two programs, the menu entry and its icon, a manual page for each program, and the
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
install(FILES ${TALLORY_PACKAGING_DIR}/icons/tallory.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(DIRECTORY ${TALLORY_PACKAGING_DIR}/icons/hicolor/
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor
        FILES_MATCHING PATTERN "*.png")

# Manual pages go in compressed, as the system keeps them; compressed when installing, so that a
# build that installs nothing does no work for them.
set(TALLORY_MAN_PAGES tallory.1 tallory-cli.1)
set(TALLORY_MAN_BUILD_DIR ${PROJECT_BINARY_DIR}/man)
install(CODE "
  file(MAKE_DIRECTORY \"${TALLORY_MAN_BUILD_DIR}\")
  foreach(page ${TALLORY_MAN_PAGES})
    execute_process(COMMAND gzip -9nc \"${TALLORY_PACKAGING_DIR}/man/\${page}\"
                    OUTPUT_FILE \"${TALLORY_MAN_BUILD_DIR}/\${page}.gz\"
                    RESULT_VARIABLE failed)
    if(failed)
      message(FATAL_ERROR \"gzip of the manual page \${page} failed\")
    endif()
  endforeach()")
foreach(page ${TALLORY_MAN_PAGES})
  install(FILES ${TALLORY_MAN_BUILD_DIR}/${page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()

install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/demo-course
        DESTINATION ${CMAKE_INSTALL_DATADIR}/tallory)
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tallory)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tallory)
set(CPACK_PACKAGE_VENDOR "Tallory")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "grade book for classroom clickers")
set(CPACK_PACKAGE_DESCRIPTION
    "Tallory reads the session logs that classroom clicker polling leaves in a course folder, \
scores every student per session and shows a grid of students by sessions. It sets points per \
question, fixes clicker registrations, exports grades for course-management systems and writes \
HTML reports. The package holds the desktop program tallory and tallory-cli, the same grade book \
for scripts.")
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
