# SPDX-License-Identifier: MIT
# The word store benchmark reads the default stores of this build's data folder.
if(TARGET word_stores_bench)
  target_compile_definitions(word_stores_bench PRIVATE VNTTS_INDEX_DIR="${VNTTS_INDEX_DIR}")
  if(TARGET vntts_word_stores)
    add_dependencies(word_stores_bench vntts_word_stores)
  endif()
endif()
