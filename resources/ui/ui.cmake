# SPDX-License-Identifier: MIT
# The Speaker window as a desktop application: its entry and icon, installed with the library
# and the window module.
if(TARGET vntts_ui_module)
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/vntts-speaker.desktop
          DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/icons/speaker_32.png
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/32x32/apps RENAME vntts.png)
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/icons/speaker_64.png
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/64x64/apps RENAME vntts.png)
endif()
