# SPDX-License-Identifier: MIT
# The store tests read the default stores the build puts into the data folder.
if(TARGET test_store AND TARGET vntts_word_stores)
  add_dependencies(test_store vntts_word_stores)
endif()
