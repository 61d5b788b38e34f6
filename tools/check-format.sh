#!/usr/bin/env bash
# Fails, naming the places, when a source file is not as clang-format leaves it.
set -eu
cd "$(dirname "$0")/.."
find src plugins tests bench fuzz \( -name '*.cpp' -o -name '*.h' -o -name '*.c' \) -print0 |
    xargs -0 clang-format --dry-run --Werror
