#!/usr/bin/env bash
# Called by test.sh lint after a release build. Runs the short clang-tidy list of .clang-tidy over
# the sources of the editor and its plug-ins.
set -eu
cd "$(dirname "$0")/.."

# Clang can't read another compiler's precompiled header: name the header itself instead.
mkdir -p build/lint
sed -e "s#-Winvalid-pch -include [^ ]*/cmake_pch.hxx#-include $PWD/src/tPrecompiledApp.h#" \
    -e "s#-DQT_NO_DEBUG ##; s#-fpch-preprocess##" \
    build/release/compile_commands.json > build/lint/compile_commands.json
qt=$(pkg-config --cflags Qt5Widgets Qt5OpenGL)
extra=(--extra-arg=-Wno-unknown-warning-option --extra-arg=-Wno-ignored-optimization-argument)
for flag in $qt; do
    extra+=("--extra-arg=$flag")
done
find src plugins -name '*.cpp' -print0 |
    xargs -0 -n 4 -P "$(nproc)" clang-tidy --quiet -p build/lint "${extra[@]}"
