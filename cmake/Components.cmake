# SPDX-License-Identifier: MIT
# Each folder under src/ is one static component; libvntts.so and the vntts command link them.
# A component compiles on its own so that work in one folder never blocks another.
function(vntts_component name)
  cmake_parse_arguments(ARG "" "DIR" "DEPS;SYSTEM" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "${ARG_DIR}/*.cpp")
  if(NOT sources)
    set(sources "${CMAKE_SOURCE_DIR}/cmake/empty.cpp")
  endif()
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR}/include)
  target_link_libraries(${name} PUBLIC ${ARG_DEPS} ${ARG_SYSTEM} Threads::Threads
                        PRIVATE vntts_warnings)
  set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden
                                           VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# Tests of one folder: tests/<dir>/*_test.cpp form test_<dir> (label unit),
# *_device_test.cpp form test_<dir>_device (label device), *_slow_test.cpp form
# test_<dir>_slow (label slow). Helpers shared by a folder's tests live in tests/<dir>/*.h
# and tests/support/.
function(vntts_tests dir)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  set(base "${CMAKE_CURRENT_SOURCE_DIR}/${dir}")
  string(REPLACE "/" "_" tag "${dir}")
  file(GLOB all CONFIGURE_DEPENDS "${base}/*_test.cpp")
  file(GLOB device CONFIGURE_DEPENDS "${base}/*_device_test.cpp")
  file(GLOB slow CONFIGURE_DEPENDS "${base}/*_slow_test.cpp")
  file(GLOB support CONFIGURE_DEPENDS "${base}/support/*.cpp")
  set(unit ${all})
  if(device)
    list(REMOVE_ITEM unit ${device})
  endif()
  if(slow)
    list(REMOVE_ITEM unit ${slow})
  endif()
  foreach(kind unit device slow)
    set(files ${${kind}})
    if(NOT files)
      continue()
    endif()
    if(kind STREQUAL "unit")
      set(exe test_${tag})
    else()
      set(exe test_${tag}_${kind})
    endif()
    add_executable(${exe} ${files} ${support})
    target_include_directories(${exe} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR} ${base})
    target_compile_definitions(${exe} PRIVATE
      VNTTS_SHARED_DIR="${VNTTS_SHARED_DIR}"
      VNTTS_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
      VNTTS_BINARY_DIR="${CMAKE_BINARY_DIR}")
    target_link_libraries(${exe} PRIVATE ${ARG_DEPS} vntts_test_support GTest::gtest_main
                          GTest::gmock vntts_warnings)
    # Device tests share the one sound server and its null sink: never run two at once.
    set(extra_properties)
    if(kind STREQUAL "device")
      set(extra_properties RESOURCE_LOCK sound_server)
    endif()
    gtest_discover_tests(${exe} PROPERTIES LABELS ${kind} ${extra_properties}
                         DISCOVERY_TIMEOUT 60)
  endforeach()
endfunction()
