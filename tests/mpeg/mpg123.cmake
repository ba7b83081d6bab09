# SPDX-License-Identifier: MIT
# libmpg123 is the reference decoder of the slow comparison test (never linked into the
# library itself).
pkg_check_modules(MPG123 IMPORTED_TARGET libmpg123)
if(MPG123_FOUND AND TARGET test_mpeg_slow)
  target_link_libraries(test_mpeg_slow PRIVATE PkgConfig::MPG123)
  target_compile_definitions(test_mpeg_slow PRIVATE VNTTS_HAVE_MPG123=1)
endif()
# The test signals are written as WAV files for LAME with the project's own writer.
if(TARGET test_mpeg_slow)
  target_link_libraries(test_mpeg_slow PRIVATE vntts_audio)
endif()
