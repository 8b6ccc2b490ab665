# Tells the desktop's caches about the installed (or removed) desktop entry
# and project-file type. Only for a real prefix: a staging DESTDIR is the
# packaging tools' business, and they refresh the caches themselves.
# Expects VELDA_DESKTOP_DATADIR, the absolute share folder.
if(NOT "$ENV{DESTDIR}" STREQUAL "")
  return()
endif()
find_program(velda_update_mime update-mime-database)
if(velda_update_mime AND IS_DIRECTORY "${VELDA_DESKTOP_DATADIR}/mime/packages")
  execute_process(COMMAND ${velda_update_mime} "${VELDA_DESKTOP_DATADIR}/mime")
endif()
find_program(velda_update_desktop update-desktop-database)
if(velda_update_desktop AND IS_DIRECTORY "${VELDA_DESKTOP_DATADIR}/applications")
  execute_process(COMMAND ${velda_update_desktop} -q "${VELDA_DESKTOP_DATADIR}/applications")
endif()
