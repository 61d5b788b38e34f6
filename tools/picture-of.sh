#!/usr/bin/env bash
# Starts the editor on a map, waits until a window shows it, writes a picture of the screen, ends
# the editor. Fails when the map does not show within a minute.
#
#   tools/picture-of.sh PROGRAM MAP PICTURE
set -eu
program=$1 map=$2 picture=$3
log=$(mktemp)
# The editor is stopped on every way out; the result is the one decided before.
finish() {
    status=$?
    set +e
    kill "$editor" 2>/dev/null
    wait "$editor" 2>/dev/null
    rm -f "$log"
    exit "$status"
}
trap finish EXIT

stdbuf -oL "$program" "$map" >"$log" 2>&1 &
editor=$!
name=$(basename "$map")
for _ in $(seq 1 240); do
    kill -0 "$editor" 2>/dev/null || { echo "The editor ended by itself:" >&2; cat "$log" >&2; exit 1; }
    if grep -q '^Loaded project' "$log" && xdotool search --onlyvisible --name "$name" >/dev/null 2>&1; then
        # The views paint at the next turns of the event loop.
        sleep 2
        import -window root "$picture"
        echo "The picture of the window is in $picture"
        exit 0
    fi
    sleep 0.25
done
echo "The map did not show:" >&2
cat "$log" >&2
exit 1
