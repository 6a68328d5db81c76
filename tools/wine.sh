#!/usr/bin/env bash
# Runs programs built for Windows under Wine, in a system of their own that needs no display.
#
#   wine.sh start BUILD               a fresh system for that build folder, kept ready until it is stopped
#   wine.sh run BUILD PROGRAM ...     runs a program in it; starts it where that was not done
#   wine.sh stop BUILD                ends everything that runs in it and removes it
set -euo pipefail

command=$1
build=$(realpath -m -- "$2")
shift 2
export WINEPREFIX=$build/wine
export WINEDEBUG=-all
# What tests throw away goes with the system, and not into the desktop's bin.
export XDG_DATA_HOME=$WINEPREFIX/data
# Nothing asks whether to fetch what Wine comes without, and a program that crashes ends.
export WINEDLLOVERRIDES='mscoree,mshtml,winedbg.exe,winemenubuilder.exe='
unset DISPLAY WAYLAND_DISPLAY
loader=$(command -v wine64 || echo /usr/lib/wine/wine64)
server=$(command -v wineserver64 || echo /usr/lib/wine/wineserver64)

# It keeps the folder that it is started in, and would keep a pipe that somebody reads to its end.
start_server() {
    (cd / && "$server" -p) </dev/null >/dev/null 2>&1
}

start() {
    stop
    mkdir -p "$XDG_DATA_HOME"
    start_server
    "$loader" wineboot --init </dev/null >/dev/null 2>&1
    "$loader" reg add 'HKCU\Software\Wine' /v Version /d win10 /f </dev/null >/dev/null 2>&1
    # Else files whose names begin with a full stop were hidden in listings, and only there.
    "$loader" reg add 'HKCU\Software\Wine' /v ShowDotFiles /d Y /f </dev/null >/dev/null 2>&1
    # Where tests make their folders: in memory, as they bring every file to the device. Wine leaves TEMP as it is.
    # The tests take a few MiB; some containers give less.
    local memory=/dev/shm room folder
    room=$(df -Pk "$memory" 2>/dev/null | awk 'NR == 2 { print $4 }' || true)
    [ -w "$memory" ] && [ "${room:-0}" -ge 48000 ] || memory=/tmp
    folder=$(mktemp -d "$memory/corvalence-wine-XXXXXX")
    ln -s "$folder" "$WINEPREFIX/dosdevices/t:"
    # Drives are looked for once, at the start.
    "$server" -k || true
    "$server" -w
    start_server
    # The system's services, too, must hold no pipe of whoever runs the first program.
    "$loader" wineboot </dev/null >/dev/null 2>&1
}

stop() {
    [ -d "$WINEPREFIX" ] || return 0
    "$server" -k || true # it is not running
    "$server" -w || true
    local folder
    folder=$(readlink "$WINEPREFIX/dosdevices/t:" || true)
    case $folder in
    /dev/shm/corvalence-wine-* | /tmp/corvalence-wine-*) rm -rf "$folder" ;;
    esac
    rm -rf "$WINEPREFIX"
}

case $command in
start) start ;;
stop) stop ;;
run)
    [ -e "$WINEPREFIX/dosdevices/t:" ] || start
    export CORVALENCE_TEST_FOLDER='T:\'
    # The desktop that the first program with a window starts keeps its standard error, for as long as any program
    # needs the desktop: whoever reads that pipe to its end would wait for all of them.
    errors=$(mktemp "$WINEPREFIX/errors-XXXXXX")
    status=0
    "$loader" "$@" 2>"$errors" || status=$?
    cat "$errors" >&2
    exit "$status"
    ;;
*)
    echo "wine.sh start|run|stop BUILD ..." >&2
    exit 2
    ;;
esac
