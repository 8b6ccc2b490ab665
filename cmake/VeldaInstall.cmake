# make install: the programs, the manual, the man pages, and what a desktop
# needs to list VELDA in its menus and open project files (.gaj) with it.
# make uninstall removes what the last install listed in its manifest.

install(TARGETS velda-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}
        PATTERN "DEVELOPING.md" EXCLUDE)

# The man pages name the installed manual.
set(VELDA_MANUAL_INDEX ${CMAKE_INSTALL_FULL_DOCDIR}/index.html)
set(man_pages velda-cli.1)
if(TARGET velda)
  list(APPEND man_pages velda.1)
endif()
foreach(page ${man_pages})
  configure_file(${PROJECT_SOURCE_DIR}/packaging/${page}.in ${CMAKE_BINARY_DIR}/man/${page} @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/man/${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()

if(TARGET velda)
  install(TARGETS velda RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/velda.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/velda.svg
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/velda-mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
          RENAME velda.xml)
  install(CODE "set(VELDA_DESKTOP_DATADIR \"${CMAKE_INSTALL_FULL_DATADIR}\")")
  install(SCRIPT ${PROJECT_SOURCE_DIR}/cmake/DesktopCaches.cmake)
endif()

configure_file(${PROJECT_SOURCE_DIR}/cmake/Uninstall.cmake.in ${CMAKE_BINARY_DIR}/velda_uninstall.cmake @ONLY)
add_custom_target(uninstall COMMAND ${CMAKE_COMMAND} -P ${CMAKE_BINARY_DIR}/velda_uninstall.cmake)
