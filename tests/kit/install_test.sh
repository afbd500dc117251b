#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs, moves the prefix away, and looks whether everything finds its neighbours from there.
# usage: install_test.sh SOURCE BUILD PREFIX
set -euo pipefail
source=$1 build=$2 prefix=$3

rm -rf "$prefix" "$prefix-first"
cmake --install "$build" --prefix "$prefix-first" >/dev/null
mv "$prefix-first" "$prefix"
if grep -rIF -e "$source" -e "$build" "$prefix"; then
    echo 'these lines name a folder of the machine that built them' >&2
    exit 1
fi
module=$(find "$prefix" -name glwindow.so)
"$prefix/bin/glview" --version | grep -xF "module $module"
