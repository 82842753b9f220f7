#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# under_wayland.sh WESTON COMMAND...
# Runs a test on a Wayland compositor of its own, which is a window of the X server that this was started on (see
# under_x11.sh), and stops it afterwards. The window's pointer is that of the server.
set -euo pipefail
weston=$1
shift

directory=$(mktemp -d)
finish() {
    jobs -p | xargs -r kill 2>/dev/null || true
    wait
    rm -rf "$directory"
}
trap finish EXIT
trap 'exit 143' TERM INT HUP

export XDG_RUNTIME_DIR=$directory
cat > "$directory/weston.ini" <<'SETTINGS'
[core]
idle-time=0
[shell]
panel-position=none
animation=none
startup-animation=none
locking=false
SETTINGS

# Its shell is a client of its own, and only once that is ready does everything work. It says what it sends.
WAYLAND_DEBUG=client "$weston" --backend=x11-backend.so --use-pixman --width=640 --height=480 \
    --config="$directory/weston.ini" --socket=test > "$directory/compositor.log" 2>&1 &
compositor=$!
for ((attempt = 0; attempt < 300; ++attempt)); do
    grep -q desktop_ready "$directory/compositor.log" && break
    kill -0 $compositor 2>/dev/null || break
    sleep 0.1
done
grep -q desktop_ready "$directory/compositor.log" || { cat "$directory/compositor.log"; echo "no compositor"; exit 1; }

# Not exec: the trap is to run. In the background, so that a signal reaches the trap at once.
QT_QPA_PLATFORM=wayland WAYLAND_DISPLAY=test "$@" &
wait $!
