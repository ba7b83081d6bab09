# SPDX-License-Identifier: MIT
# The install as a host developer meets it: a moved prefix, pkg-config and find_package clients.
# It installs the whole build (voice included); a few seconds.
if(TARGET vntts_voice)
  add_test(NAME install_moved_prefix
           COMMAND sh ${CMAKE_CURRENT_LIST_DIR}/install_test.sh ${CMAKE_BINARY_DIR} ${CMAKE_SOURCE_DIR})
  set_tests_properties(install_moved_prefix PROPERTIES LABELS install TIMEOUT 300)
endif()
