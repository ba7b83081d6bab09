# SPDX-License-Identifier: MIT
# The convert tests run the built `vntts` program.
if(TARGET test_cli AND TARGET vntts_cli)
  add_dependencies(test_cli vntts_cli)
  target_compile_definitions(test_cli PRIVATE VNTTS_PROGRAM="$<TARGET_FILE:vntts_cli>")
endif()
