#!/usr/bin/env bash
# Fails, naming the places, where OpenGL is called or its state set outside the views and the
# files named here: widgets that upload or preview something.
set -u
cd "$(dirname "$0")/.."
allowed='^src/views/'
calls=$(grep -rnE '\bglu?[A-Z]\w*\s*\(|\bGL_\w+\s*\(|\bGLS_|tGLState\.h|\bqopengl' \
    --include='*.cpp' --include='*.h' src plugins)
[ -n "$calls" ] || { echo "no call of OpenGL found at all" >&2; exit 1; }
! grep -vE "$allowed" <<<"$calls"
