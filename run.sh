#!/usr/bin/env bash
# Installs what is missing, builds the editor, starts it on FILE (a map of the sample game when
# none is given). Without a display it starts under a virtual X server, waits until the map is
# shown and writes a picture of the window to build/karvex.png.
#
#   ./run.sh [FILE]
set -eu
here=$(cd "$(dirname "$0")" && pwd)
file=${1:-$here/build/release/bin/game/maps/hall.map}
case "$file" in /*) ;; *) file=$PWD/$file ;; esac
cd "$here"

tools/setup.sh
echo "Building..."
cmake --preset release >build-configure.log 2>&1 || { cat build-configure.log; exit 1; }
rm -f build-configure.log
cmake --build --preset release
[ -f "$file" ] || { echo "There is no file \"$file\"." >&2; exit 1; }

program=$here/build/release/bin/karvex
if [ -n "${DISPLAY:-}" ]; then
    exec "$program" "$file"
fi
echo "No display: starting the editor under a virtual X server."
exec tools/run-under-x.sh tools/picture-of.sh "$program" "$file" "$here/build/karvex.png"
