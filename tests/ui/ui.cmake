# SPDX-License-Identifier: MIT
# The windows as a person meets them (label ui): the Qt views offscreen, and two programs that
# use the windows through the library, one with its own Qt event loop and one written in C
# without Qt. Built when the window module is.
if(TARGET vntts_ui_qt)
  find_package(Qt6 REQUIRED COMPONENTS Widgets Test)
  set(ui_test_environment "QT_QPA_PLATFORM=offscreen;VNTTS_AUDIO=null;VNTTS_DATA_DIR=${VNTTS_INDEX_DIR}"
      "TSAN_OPTIONS=suppressions=${CMAKE_CURRENT_LIST_DIR}/tsan.supp")

  file(GLOB view_tests CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/views/*.cpp)
  add_executable(test_ui_views ${view_tests})
  target_compile_definitions(test_ui_views PRIVATE VNTTS_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
                                                   VNTTS_BINARY_DIR="${CMAKE_BINARY_DIR}")
  target_link_libraries(test_ui_views PRIVATE vntts_ui_qt vntts_ui_host vntts_all Qt6::Test
                        vntts_test_support GTest::gtest vntts_warnings)
  gtest_discover_tests(test_ui_views PROPERTIES LABELS ui ENVIRONMENT "${ui_test_environment}"
                       DISCOVERY_TIMEOUT 60)

  # Given a folder, the Qt host also renders the windows into PNG files (scripts/screenshots).
  add_executable(test_ui_qt_host ${CMAKE_CURRENT_LIST_DIR}/hosts/qt_host.cpp)
  target_link_libraries(test_ui_qt_host PRIVATE vntts Qt6::Widgets Qt6::Test vntts_warnings)
  add_dependencies(test_ui_qt_host vntts_ui_module)
  add_test(NAME ui_qt_host COMMAND test_ui_qt_host)

  add_executable(test_ui_c_host ${CMAKE_CURRENT_LIST_DIR}/hosts/c_host.c
                                ${CMAKE_CURRENT_LIST_DIR}/hosts/open_windows.cpp)
  set_target_properties(test_ui_c_host PROPERTIES C_STANDARD 99)
  target_include_directories(test_ui_c_host PRIVATE ${CMAKE_SOURCE_DIR}/src)
  target_compile_definitions(test_ui_c_host PRIVATE
                             VNTTS_UI_MODULE_PATH="$<TARGET_FILE:vntts_ui_module>")
  target_link_libraries(test_ui_c_host PRIVATE vntts Threads::Threads ${CMAKE_DL_LIBS})
  add_dependencies(test_ui_c_host vntts_ui_module)
  add_test(NAME ui_c_host COMMAND test_ui_c_host)

  set_tests_properties(ui_qt_host ui_c_host PROPERTIES LABELS ui ENVIRONMENT
                       "${ui_test_environment}" TIMEOUT 120)
endif()

# The export tests load the module when they ask for a window.
if(TARGET vntts_ui_module AND TARGET test_api)
  add_dependencies(test_api vntts_ui_module)
endif()

# The library itself never needs Qt: only the module it loads does.
add_test(NAME ui_library_needs_no_qt
         COMMAND sh -c "! ldd \"$1\" | grep -i qt" sh $<TARGET_FILE:vntts>)
set_tests_properties(ui_library_needs_no_qt PROPERTIES LABELS unit)
