# SPDX-License-Identifier: MIT
# The archive tests compare our decoding with libmpg123 and make their MP3s with LAME.
pkg_check_modules(ARCHIVE_MPG123 IMPORTED_TARGET libmpg123)
find_path(ARCHIVE_LAME_INCLUDE lame/lame.h)
find_library(ARCHIVE_LAME_LIBRARY mp3lame)
foreach(t test_archive test_archive_slow)
  if(NOT TARGET ${t})
    continue()
  endif()
  if(ARCHIVE_MPG123_FOUND AND ARCHIVE_LAME_INCLUDE AND ARCHIVE_LAME_LIBRARY)
    target_link_libraries(${t} PRIVATE PkgConfig::ARCHIVE_MPG123 ${ARCHIVE_LAME_LIBRARY})
    target_include_directories(${t} PRIVATE ${ARCHIVE_LAME_INCLUDE})
    target_compile_definitions(${t} PRIVATE VNTTS_HAVE_REFERENCE_CODECS=1)
    if(t STREQUAL "test_archive")
      # The voice generator's encoding, checked against our decoder and libmpg123.
      target_sources(${t} PRIVATE ${CMAKE_SOURCE_DIR}/tools/voicegen/unit_encoding.cpp
                                  ${CMAKE_SOURCE_DIR}/tools/voicegen/mp3_encoder.cpp)
    endif()
  endif()
  target_compile_definitions(${t} PRIVATE VNTTS_INDEX_DIR="${VNTTS_INDEX_DIR}")
endforeach()

# The voice generator's spelling rules and unit shaping are tested here too; they need neither
# eSpeak NG nor LAME.
if(TARGET test_archive)
  target_sources(test_archive PRIVATE ${CMAKE_SOURCE_DIR}/tools/voicegen/orthography.cpp
                                      ${CMAKE_SOURCE_DIR}/tools/voicegen/vietnamese_letters.cpp
                                      ${CMAKE_SOURCE_DIR}/tools/voicegen/unit_shaping.cpp)
  target_include_directories(test_archive PRIVATE ${CMAKE_SOURCE_DIR}/tools/voicegen)
endif()
