#!/bin/sh
# SPDX-License-Identifier: MIT
# Installs the build into a temporary prefix (stripped, as a release install is), moves the
# prefix elsewhere, then builds two small hosts against the moved install, one with pkg-config and
# one with find_package(vntts), and runs them and the installed command: each must find the
# library, the header and the voice from where the files now are.
# Usage: install_test.sh BUILD_DIR SOURCE_DIR
set -eu
build=$1
source=$2
work=$(mktemp -d "${TMPDIR:-/tmp}/vntts-install.XXXXXX")
trap 'rm -rf "$work"' EXIT
unset VNTTS_DATA_DIR
export VNTTS_AUDIO=null

fail() { echo "install test: $*" >&2; exit 1; }

cmake --install "$build" --prefix "$work/first" --strip >"$work/install.log" ||
  { cat "$work/install.log"; fail "cmake --install failed"; }
mv "$work/first" "$work/moved"
prefix=$work/moved
lib=$(dirname "$(find "$prefix" -name 'libvntts.so.*.*' | head -n 1)")
[ -n "$lib" ] || fail "no libvntts.so.X.Y.Z installed"

# The library carries its SONAME and version; the release install has no symbol table.
readelf -d "$lib"/libvntts.so.*.* | grep -q 'SONAME.*\[libvntts\.so\.[0-9]*\]' || fail "no SONAME"
[ -L "$lib/libvntts.so" ] || fail "no libvntts.so development link"
if readelf -S "$lib"/libvntts.so.*.* | grep -q '\.symtab'; then fail "library not stripped"; fi
for f in include/vntts/vntts.h share/man/man1/vntts.1 share/man/man3/vntts.3 \
  share/vntts/index/main_dic.dat share/vntts/index/AutoCrt.crt share/doc/vntts/LICENSE \
  share/doc/vntts/NOTICE bin/vntts; do
  [ -e "$prefix/$f" ] || fail "$f is not installed"
done
man -l "$prefix/share/man/man1/vntts.1" >/dev/null 2>&1 || fail "vntts(1) does not render"

# pkg-config, through the .pc file's own folder.
export PKG_CONFIG_PATH="$lib/pkgconfig"
flags=$(pkg-config --cflags --libs vntts) || fail "pkg-config does not know vntts"
# shellcheck disable=SC2086
cc -std=c99 -Wall -Werror "$source/tests/install/speak_client.c" $flags -o "$work/pc_client" ||
  fail "the pkg-config client does not build"
LD_LIBRARY_PATH=$lib "$work/pc_client" "$work/pc.wav" || fail "the pkg-config client failed"

# find_package(vntts) in a CMake project.
mkdir "$work/cmake_client"
cp "$source/tests/install/speak_client.c" "$work/cmake_client/"
cp "$source/tests/install/CMakeLists.txt.in" "$work/cmake_client/CMakeLists.txt"
cmake -S "$work/cmake_client" -B "$work/cmake_client/build" -DCMAKE_PREFIX_PATH="$prefix" \
  >"$work/cmake.log" 2>&1 || { cat "$work/cmake.log"; fail "find_package(vntts) failed"; }
cmake --build "$work/cmake_client/build" >"$work/build.log" 2>&1 ||
  { cat "$work/build.log"; fail "the CMake client does not build"; }
"$work/cmake_client/build/client" "$work/cmake.wav" || fail "the CMake client failed"

# The installed command finds the voice from its own folder too, also when found through PATH
# from another folder.
(cd "$work" && PATH="$prefix/bin:$PATH" vntts say -w command.wav "Xin chào.") ||
  fail "the installed command failed"
# The speech-dispatcher module and its configuration stay under the prefix; the module finds
# the library and the voice from where they now are.
module=$prefix/libexec/speech-dispatcher-modules/sd_vntts
[ -e "$prefix/etc/speech-dispatcher/modules/vntts.conf" ] || fail "vntts.conf is not under the prefix"
printf 'INIT\nQUIT\n' | "$module" 2>"$work/module.log" | grep -q '^299 OK' ||
  { cat "$work/module.log"; fail "the installed sd_vntts does not start"; }
echo "install test: passed"
