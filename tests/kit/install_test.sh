#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs into an empty prefix, moves it, and works from there alone: the viewer finds its module,
# and a program links the module by each of the two package files.
# usage: install_test.sh SOURCE BUILD COMPILER
set -euo pipefail
source=$1 build=$2 compiler=$3
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "$*" >&2
    exit 1
}
# quietly COMMAND...: shows what it wrote only if it fails.
quietly() { "$@" >"$work/log" 2>&1 || { cat "$work/log"; fail "failed: $*"; }; }

quietly cmake --install "$build" --prefix "$work/first"
prefix=$work/moved
mv "$work/first" "$prefix"
named=$(grep -rIlF -e "$source" -e "$work" "$prefix" || true)
[ -z "$named" ] || fail "these name a folder of the machine that built them: $named"

module=$(find "$prefix" -name glwindow.so)
"$prefix/bin/glview" --version | grep -qxF "module $module" ||
    fail "the viewer does not find $module"

# build_host NAME FOLDER: builds a project that finds the package in the prefix alone.
build_host() {
    cp -r "$2" "$work/$1"
    quietly cmake -G Ninja -S "$work/$1" -B "$work/$1/build" -DCMAKE_PREFIX_PATH="$prefix" \
        -DCMAKE_CXX_COMPILER="$compiler"
    quietly cmake --build "$work/$1/build"
}

expected='view visible: true'
build_host linked "$here/linked"
said=$("$work/linked/build/linked")
[ "$said" = "$expected" ] || fail "linked by the CMake package, the program said: $said"

PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name glwindow.pc)")
export PKG_CONFIG_PATH
read -ra flags <<<"$(pkg-config --cflags --libs glwindow)"
quietly "$compiler" -std=c++17 -fPIC "$here/linked/main.cpp" -o "$work/by_pkg_config" "${flags[@]}"
said=$("$work/by_pkg_config")
[ "$said" = "$expected" ] || fail "linked by the pkg-config file, the program said: $said"
