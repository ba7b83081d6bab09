# SPDX-License-Identifier: MIT
# The decoder benchmark runs libmpg123 side by side with our decoder as the yardstick.
pkg_check_modules(MPG123 IMPORTED_TARGET libmpg123)
if(TARGET mpeg_bench)
  target_include_directories(mpeg_bench PRIVATE ${CMAKE_SOURCE_DIR}/tests/mpeg)
  if(MPG123_FOUND)
    target_link_libraries(mpeg_bench PRIVATE PkgConfig::MPG123)
    target_compile_definitions(mpeg_bench PRIVATE VNTTS_HAVE_MPG123=1)
  endif()
endif()
