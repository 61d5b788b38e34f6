#!/usr/bin/env bash
# Runs a command under a virtual X server with a window manager, both waited for: without one
# there is no activation, no focus and no shortcut. The result is the command's.
#   run-under-x.sh COMMAND [ARGUMENT...]
set -eu

work=$(mktemp -d)
servers=()
stop() {
    for id in "${servers[@]}"; do
        kill "$id" 2>/dev/null || :
        wait "$id" 2>/dev/null || :
    done
    rm -rf "$work"
}
trap stop EXIT

# The server picks a free display itself and writes its number.
Xvfb -displayfd 3 -screen 0 1600x1000x24 +extension GLX -nolisten tcp \
    3>"$work/display" >"$work/xvfb.log" 2>&1 &
servers+=($!)
deadline=$((SECONDS + 60)) # the machine may be busy
while [ ! -s "$work/display" ] && [ $SECONDS -lt $deadline ]; do
    sleep 0.05
done
[ -s "$work/display" ] || {
    cat "$work/xvfb.log" >&2
    exit 70
}

export DISPLAY=":$(cat "$work/display")"
export XDG_RUNTIME_DIR="$work"
export LANG=C.UTF-8
chmod 700 "$work"

# Without the window manager every wait for an active window would run out and blame the tests: one
# that has ended is started again, and one that does not come at all is a failure of its own.
manages() { timeout 5 xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }
manager=
for _ in $(seq 400); do
    if [ -z "$manager" ] || ! kill -0 "$manager" 2>/dev/null; then
        openbox >>"$work/openbox.log" 2>&1 &
        manager=$!
        servers[1]=$manager
    fi
    manages && break
    sleep 0.1
done
manages || {
    echo "The window manager did not start:" >&2
    tail -n 5 "$work/openbox.log" "$work/xvfb.log" >&2
    exit 70
}

status=0
"$@" || status=$?
exit "$status"
