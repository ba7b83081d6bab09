# SPDX-License-Identifier: MIT
# The naming check on the components declared clean (scripts/lint-naming), label lint.
find_program(VNTTS_CLANG_TIDY clang-tidy)
if(VNTTS_CLANG_TIDY)
  add_test(NAME lint.naming COMMAND ${CMAKE_SOURCE_DIR}/scripts/lint-naming ${CMAKE_BINARY_DIR})
  set_tests_properties(lint.naming PROPERTIES LABELS lint SKIP_RETURN_CODE 77 TIMEOUT 600)
endif()
