# SPDX-License-Identifier: MIT
# The words benchmark reads the definitions, auto-correct table and voice of this build's data
# folder, as the command does by default.
if(TARGET words_bench)
  target_compile_definitions(words_bench PRIVATE VNTTS_INDEX_DIR="${VNTTS_INDEX_DIR}")
endif()
