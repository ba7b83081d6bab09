# SPDX-License-Identifier: MIT
# What `cmake --install` adds beside the library, header, command and data folder (installed by
# src/, cli/ and resources/): the pkg-config file, the CMake package, the manual pages, the
# licence files and the Debian package settings. Every path inside the installed files is
# relative to the file itself, so an installed tree still works after it is moved.

# The library and the command find the data folder relative to their own folder; the relative
# paths are fixed here, where the layout is decided.
set(vntts_data_dir "${CMAKE_INSTALL_DATADIR}/vntts/index")
file(RELATIVE_PATH vntts_data_from_libdir "/root/${CMAKE_INSTALL_LIBDIR}" "/root/${vntts_data_dir}")
file(RELATIVE_PATH vntts_data_from_bindir "/root/${CMAKE_INSTALL_BINDIR}" "/root/${vntts_data_dir}")
target_compile_definitions(vntts_core PRIVATE
  VNTTS_DATA_FROM_LIBDIR="${vntts_data_from_libdir}"
  VNTTS_DATA_FROM_BINDIR="${vntts_data_from_bindir}")

# pkg-config: prefix is found from the .pc file's own folder (pkg-config's ${pcfiledir}).
file(RELATIVE_PATH vntts_pc_to_prefix "/root/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/root")
string(REGEX REPLACE "/$" "" vntts_pc_to_prefix "${vntts_pc_to_prefix}")
configure_file(${CMAKE_SOURCE_DIR}/cmake/vntts.pc.in ${CMAKE_BINARY_DIR}/vntts.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/vntts.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# CMake package: find_package(vntts) gives the imported target vntts::vntts.
include(CMakePackageConfigHelpers)
set(vntts_cmake_dir "${CMAKE_INSTALL_LIBDIR}/cmake/vntts")
file(RELATIVE_PATH vntts_cmake_to_prefix "/root/${vntts_cmake_dir}" "/root")
configure_file(${CMAKE_SOURCE_DIR}/cmake/vnttsConfig.cmake.in
               ${CMAKE_BINARY_DIR}/vnttsConfig.cmake @ONLY)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/vnttsConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/vnttsConfig.cmake ${CMAKE_BINARY_DIR}/vnttsConfigVersion.cmake
        DESTINATION ${vntts_cmake_dir})

# Manual pages.
foreach(page vntts.1 vntts.3)
  configure_file(${CMAKE_SOURCE_DIR}/man/${page} ${CMAKE_BINARY_DIR}/man/${page} @ONLY)
  string(REGEX REPLACE ".*\\." "" section ${page})
  install(FILES ${CMAKE_BINARY_DIR}/man/${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section})
endforeach()

# The Speaker window as a desktop application, once the dialogs module is part of the build.
if(TARGET vntts_ui OR TARGET vntts-ui)
  install(FILES ${CMAKE_SOURCE_DIR}/desktop/vntts-speaker.desktop
          DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
endif()

install(FILES ${CMAKE_SOURCE_DIR}/LICENSE ${CMAKE_SOURCE_DIR}/NOTICE
        DESTINATION ${CMAKE_INSTALL_DOCDIR})

# cpack -G DEB: one package with the library, header, command, voice and manual pages. The
# libraries it needs are worked out by dpkg-shlibdeps; the shared library gets its shlibs file
# and the ldconfig trigger.
set(CPACK_PACKAGE_NAME vntts)
set(CPACK_PACKAGE_VENDOR "vntts developers")
set(CPACK_PACKAGE_CONTACT "vntts developers <vntts@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "offline Vietnamese text-to-speech library and command")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
       "vntts speaks Vietnamese text on the sound device or into WAV files. It comes as a C "
       "library (libvntts.so, header, pkg-config file and CMake package), the vntts command and "
       "a default voice.")
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
include(CPack)
