# SPDX-License-Identifier: MIT
# The archive benchmark opens the build's default voice and decodes its units, with libmpg123
# decoding the same streams as the yardstick.
if(TARGET archive_bench)
  target_compile_definitions(archive_bench PRIVATE VNTTS_INDEX_DIR="${VNTTS_INDEX_DIR}")
  pkg_check_modules(ARCHIVE_BENCH_MPG123 IMPORTED_TARGET libmpg123)
  if(ARCHIVE_BENCH_MPG123_FOUND)
    target_link_libraries(archive_bench PRIVATE PkgConfig::ARCHIVE_BENCH_MPG123)
    target_compile_definitions(archive_bench PRIVATE VNTTS_HAVE_MPG123=1)
  endif()
endif()
