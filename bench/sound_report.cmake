# SPDX-License-Identifier: MIT
# The sound report speaks fixed texts with the default voice and with eSpeak NG (through its
# library) and prints the figures of both; it needs libespeak-ng, as the voice generator does.
find_path(SOUND_REPORT_ESPEAK_INCLUDE espeak-ng/speak_lib.h)
find_library(SOUND_REPORT_ESPEAK_LIBRARY espeak-ng)
if(SOUND_REPORT_ESPEAK_INCLUDE AND SOUND_REPORT_ESPEAK_LIBRARY)
  file(GLOB sound_report_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/sound_report/*.cpp)
  add_executable(sound_report ${sound_report_sources})
  target_include_directories(sound_report PRIVATE ${SOUND_REPORT_ESPEAK_INCLUDE} ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(sound_report PRIVATE vntts_all ${SOUND_REPORT_ESPEAK_LIBRARY}
                        vntts_warnings)
endif()
