#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The module shows its entry and the classes that hosts use, and nothing more.
# usage: exports_test.sh MODULE
set -euo pipefail
classes='GLMultiWidget|GLTile|GLW|GLWidget|GLWindow|KeyAction|MouseAction|QGLWindow|GL::(Camera|Viewport)'
allowed="^(init|((vtable|typeinfo|typeinfo name) for |non-virtual thunk to )?($classes)(::.*)?)$"
shown=$(nm -DC --defined-only "$1" | cut -d' ' -f3- | sort -u)

extra=$(grep -vE "$allowed" <<<"$shown" || true)
# What a program that links one of the classes cannot do without.
missing=$(printf '%s\n' init {GLMultiWidget,GLWidget,KeyAction,MouseAction,QGLWindow}::staticMetaObject \
    'vtable for '{GLTile,GLW,GLWindow} 'GL::Camera::Update(int)' | sort | comm -23 - <(echo "$shown"))
printf 'shown, but meant to be hidden: %s\nhidden, but meant to be shown: %s\n' "$extra" "$missing"
[ -z "$extra$missing" ]
