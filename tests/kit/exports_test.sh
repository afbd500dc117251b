#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The module shows its entry and the classes that hosts use, and nothing more.
# usage: exports_test.sh MODULE
set -euo pipefail

classes='GLMultiWidget|GLTile|GLW|GLWidget|GLWindow|KeyAction|MouseAction|QGLWindow|GL::(Camera|Viewport)'
allowed="^(init|((vtable|typeinfo|typeinfo name) for |non-virtual thunk to )?($classes)(::.*)?)$"
shown=$(nm -DC --defined-only "$1" | cut -d' ' -f3-)

status=0
if extra=$(grep -vE "$allowed" <<<"$shown"); then
    printf 'shown, but meant to be hidden:\n%s\n' "$extra"
    status=1
fi
# What a program that links one of the classes cannot do without.
for name in init {GLMultiWidget,GLWidget,KeyAction,MouseAction,QGLWindow}::staticMetaObject \
            'vtable for '{GLTile,GLW,GLWindow} 'GL::Camera::Update(int)'; do
    if ! grep -qxF "$name" <<<"$shown"; then
        echo "hidden, but meant to be shown: $name"
        status=1
    fi
done
exit $status
