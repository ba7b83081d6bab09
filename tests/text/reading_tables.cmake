# SPDX-License-Identifier: MIT
# The reading tables that name the default stores read them from this build's data folder.
if(TARGET test_text AND TARGET vntts_word_stores)
  add_dependencies(test_text vntts_word_stores)
endif()
