#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# under_x11.sh XVFB OPENBOX COMMAND...
# Runs a test on an X server of its own, with a window manager, and stops both afterwards.
set -euo pipefail
xvfb=$1 openbox=$2
shift 2

directory=$(mktemp -d)
started=()
finish() {
    # The window manager first: it complains when its server is gone.
    local index
    for ((index = ${#started[@]} - 1; index >= 0; --index)); do
        kill "${started[index]}" 2>/dev/null || true
        wait "${started[index]}" 2>/dev/null || true
    done
    rm -rf "$directory"
}
trap finish EXIT
trap 'exit 143' TERM INT HUP

# answer_of FD PID: what a process says through a pipe when it is ready, within half a minute.
answer_of() {
    local answer= part attempt ended
    for ((attempt = 0; attempt < 300; ++attempt)); do
        read -r -t 0.1 -u "$1" part && ended=yes || ended=
        answer+=$part # what a read that was too early got: the server writes its number and the line's end apart
        if [ -n "$ended" ] && [ -n "$answer" ]; then
            echo "$answer"
            return
        fi
        kill -0 "$2" 2>/dev/null || return 1
    done
    return 1
}
mkfifo "$directory/display" "$directory/managed"
exec 4<> "$directory/display" 5<> "$directory/managed" # both ends: no opening waits for the other side

# -terminate: even when this script is killed, the server goes with its last client.
"$xvfb" -displayfd 3 -terminate -screen 0 1280x800x24 -nolisten tcp 3>&4 > "$directory/server.log" 2>&1 &
started+=($!)
DISPLAY=:$(answer_of 4 $!) || { cat "$directory/server.log"; echo "no X server"; exit 1; }
export DISPLAY

# Nobody's own settings.
export HOME=$directory XDG_CONFIG_HOME=$directory XDG_CACHE_HOME=$directory XDG_DATA_HOME=$directory XDG_RUNTIME_DIR=$directory
"$openbox" --sm-disable --startup "sh -c 'echo ready > $directory/managed'" > "$directory/manager.log" 2>&1 &
started+=($!)
answer_of 5 $! > /dev/null || { cat "$directory/manager.log"; echo "no window manager"; exit 1; }

# Not exec: the trap is to run. In the background, so that a signal reaches the trap at once.
QT_QPA_PLATFORM=xcb "$@" &
started+=($!)
wait $!
