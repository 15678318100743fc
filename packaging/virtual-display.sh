#!/bin/bash
# Runs a command in a separate desktop session on a virtual display: X server, window manager, compositor (so that
# rounded corners and shadows show), session bus. Its exit status is the command's; nothing is left running.
# usage: packaging/virtual-display.sh COMMAND [ARGUMENT…]
set -eu

here=$(cd "$(dirname "$0")" && pwd)
session=$(mktemp -d "${TMPDIR:-/tmp}/plovendix-session.XXXXXX")
chmod 700 "$session"
pids=()

finish() {
    trap - EXIT INT TERM HUP
    # The last started goes first: programs before the server they draw on.
    for ((index = ${#pids[@]} - 1; index >= 0; --index)); do
        kill "${pids[index]}" 2>/dev/null || true
        wait "${pids[index]}" 2>/dev/null || true
    done
    rm -rf "$session"
}
trap finish EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

start() {
    "$@" >>"$session/log" 2>&1 &
    pids+=($!)
}

# The server itself looks for a free number and writes it once it answers.
mkfifo "$session/number"
Xvfb -displayfd 3 -screen 0 1280x1024x24 -dpi 96 -nolisten tcp -noreset 3>"$session/number" >>"$session/log" 2>&1 &
pids+=($!)
if ! read -r -t 60 number <"$session/number"; then
    echo "The virtual display did not start:" >&2
    cat "$session/log" >&2
    exit 1
fi

export DISPLAY=:$number LANG="${LANG:-C}" XDG_RUNTIME_DIR=$session FONTCONFIG_FILE=$here/fonts.conf
export QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY XAUTHORITY DBUS_SESSION_BUS_ADDRESS SESSION_MANAGER
export XDG_SESSION_TYPE=x11

wait_until() {
    local what=$1 deadline=$((SECONDS + 30))
    shift
    until "$@"; do
        ((SECONDS < deadline)) || { echo "The $what did not start:" >&2; cat "$session/log" >&2; exit 1; }
    done
}
# Neither says that it is ready; both leave something on the server that does.
compositor_runs() { xwininfo -root -children 2>/dev/null | grep -q xcompmgr; }
manager_runs() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }

# A ground that the compositor shows as well; set before it looks.
hsetroot -add '#d9dfe6' -add '#c5ced7' -gradient 180 >>"$session/log" 2>&1
start xcompmgr
wait_until "compositor" compositor_runs
start openbox --sm-disable
wait_until "window manager" manager_runs

# Started by hand rather than by dbus-run-session, which would mix the daemon's complaints into the command's output.
mkfifo "$session/address"
dbus-daemon --session --nofork --print-address=3 3>"$session/address" >>"$session/log" 2>&1 &
pids+=($!)
read -r -t 30 DBUS_SESSION_BUS_ADDRESS <"$session/address"
export DBUS_SESSION_BUS_ADDRESS

status=0
"$@" &
pids+=($!)
wait $! || status=$?
exit "$status"
