# SPDX-License-Identifier: MIT
# The module benchmark drives the built sd_vntts over pipes.
if(TARGET speechd_bench)
  target_compile_definitions(speechd_bench PRIVATE VNTTS_MODULE_PATH="$<TARGET_FILE:sd_vntts>"
                             VNTTS_BINARY_DIR="${CMAKE_BINARY_DIR}")
  add_dependencies(speechd_bench sd_vntts)
endif()
