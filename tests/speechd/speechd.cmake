# SPDX-License-Identifier: MIT
# sd_vntts under a real speech-dispatcher daemon and PulseAudio server (skips itself without).
add_test(NAME SpeechDispatcher.EndToEnd
         COMMAND /usr/bin/python3 ${CMAKE_CURRENT_SOURCE_DIR}/speechd/speech_dispatcher_e2e.py
                 $<TARGET_FILE:sd_vntts> ${VNTTS_INDEX_DIR})
set_tests_properties(SpeechDispatcher.EndToEnd PROPERTIES LABELS device RESOURCE_LOCK sound_server
                     SKIP_RETURN_CODE 77 TIMEOUT 180)
