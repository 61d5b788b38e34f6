#!/usr/bin/env bash
# Runs the short clang-tidy list of .clang-tidy over the sources of the editor and its plug-ins.
set -eu
cd "$(dirname "$0")/.."
find src plugins -name '*.cpp' -print0 |
    xargs -0 -n 4 -P "$(nproc)" clang-tidy --quiet -p build/release \
        --extra-arg=-Wno-unknown-warning-option --extra-arg=-Wno-ignored-optimization-argument
