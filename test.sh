#!/usr/bin/env bash
# Installs what is missing, builds, runs every test under a virtual X server.
#
#   ./test.sh         everything, in the release build; under CI the core also under sanitizers
#   ./test.sh asan    the same under address and undefined-behaviour sanitizers
#   ./test.sh lint    a short clang-tidy list over our own code
set -eu
cd "$(dirname "$0")"
tools/setup.sh

build() {
    cmake --preset "$1" >"build-$1.log" 2>&1 || { cat "build-$1.log"; exit 1; }
    rm -f "build-$1.log"
    cmake --build --preset "$@"
}

case "${1:-}" in
lint)
    build release
    exec tools/lint.sh
    ;;
asan)
    build asan
    exec ctest --test-dir build/asan --output-on-failure -j2
    ;;
'')
    if [ -n "${CI:-}" ]; then
        build asan --target coretests
        ctest --test-dir build/asan --output-on-failure -j2 -L core
    fi
    build release
    exec ctest --test-dir build/release --output-on-failure -j2
    ;;
*)
    echo "usage: $0 [asan|lint]" >&2
    exit 2
    ;;
esac
