# SPDX-License-Identifier: MIT
# The public header as a C host sees it: strict C99, every warning an error.
add_executable(test_api_c ${CMAKE_CURRENT_LIST_DIR}/c_client.c)
set_target_properties(test_api_c PROPERTIES C_STANDARD 99 C_STANDARD_REQUIRED ON C_EXTENSIONS OFF)
target_compile_options(test_api_c PRIVATE -Wall -Wextra -Wpedantic -Werror)
target_link_libraries(test_api_c PRIVATE vntts)
add_test(NAME api_c_host COMMAND test_api_c)
set_tests_properties(api_c_host PROPERTIES LABELS unit ENVIRONMENT "VNTTS_AUDIO=null")
