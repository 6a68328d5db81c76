#!/usr/bin/env bash
# Walks through the main screens of the built graphical program on a display of its own and saves a picture of each.
#
#   tools/walk.sh PROGRAM FOLDER [WIDTHxHEIGHT [SCALE]]     pictures go to FOLDER
#
# Needs xvfb, openbox, xdotool and imagemagick.
set -euo pipefail

program=$(realpath "$1")
pictures=$(realpath "$2")
size=${3:-1024x768}
scale=${4:-1}
work=/tmp/corvalence-walk
mkdir "$work"
export DISPLAY=:${WALK_DISPLAY:-97} HOME=$work/home XDG_RUNTIME_DIR=$work/run QT_SCALE_FACTOR=$scale
export QT_QPA_PLATFORMTHEME= CANBERRA_DRIVER=null
unset XDG_DATA_HOME XDG_CONFIG_HOME WAYLAND_DISPLAY
mkdir -p "$pictures" "$HOME" "$work/files/letters"
mkdir -m 700 "$XDG_RUNTIME_DIR"
Xvfb "$DISPLAY" -screen 0 "${size}x24" >/dev/null 2>&1 &
display=$!
trap 'kill "${running:-$display}" 2>/dev/null || true; kill "$display" 2>/dev/null || true; rm -rf "$work"' EXIT
for _ in $(seq 50); do xdotool getmouselocation >/dev/null 2>&1 && break; sleep 0.1; done
openbox >/dev/null 2>&1 &

for i in $(seq 40); do seq $((i * 30)) >"$work/files/letters/letter$i.txt"; done
"$program" >"$work/log" 2>&1 &
running=$!

# shown TITLE: waits for a window whose title begins so, and gives it the keys.
shown() {
    local turn
    for turn in $(seq 100); do
        # A window that goes in the middle of the search ends it.
        xdotool search --onlyvisible --name "^$1" >/dev/null 2>&1 && sleep 0.4 && return
        sleep 0.2
    done
    echo "No window: $1" >&2
    import -window root "$pictures/failure.png"
    cat "$work/log" >&2
    exit 1
}
press() { xdotool key --clearmodifiers "$@"; sleep 0.3; }
write() { xdotool type --delay 30 "$1"; sleep 0.3; }
picture() { sleep "${2:-0.4}"; import -window root "$pictures/$1.png"; echo "$1"; }

shown Corvalence && picture 01-no-installation && press Return
shown Corvalence && sleep 1 && write "open sesame" && picture 02-password && press Return
sleep 1 && shown Corvalence && picture 03-empty 1
press ctrl+n && shown "Create a Database" && write "letters" && picture 04-create && press Return
shown "Corvalence - /" && press ctrl+l && shown "Add files to the database"
write "$work/files" && picture 05-add && press Return
shown Searching && picture 06-searching 1 && press Return
sleep 1 && picture 07-added && press Return
picture 08-list
sed -i '50s/50/66/' "$work/files/letters/letter20.txt"
rm "$work/files/letters/letter9.txt"
press F5 && sleep 1.5 && picture 09-changed && press Return
shown "Changed file details" && picture 10-details && press alt+a
shown "File Analysis" && picture 11-analysis 1 && press Return
shown "Changed file details" && press alt+i && press Down Down Down && picture 12-choice && press Return
shown "File restore" && picture 13-restore && press Return
sleep 0.7 && picture 14-restored && press Return
sleep 1 && picture 15-unchecked && press Return
sleep 0.7 && picture 15-where-it-went && press Return
shown "Checking Summary" && picture 16-summary && press Return
for entry in "alt+s Down:Database checking schedule:17-schedule" "alt+c:Configuration:18-configuration" \
    "alt+c Down Down:Corvalence folder permissions:19-folder" "alt+l:Scheduled Checking Log:20-log"; do
    IFS=: read -r keys title name <<<"$entry"
    # shellcheck disable=SC2086
    for key in $keys Return; do press "$key"; done
    shown "$title" && picture "$name" && press Escape
done
press ctrl+w
press ctrl+2 && press ctrl+n && shown "Create a Database" && picture 21-create-names && press Escape
press ctrl+6 && picture 22-complete-system
press ctrl+n && shown "Create a Database" && write all && press Return
shown "Create Complete System" && picture 23-complete-system-create && press Escape && press Escape
press F1 && shown "Corvalence Help" && picture 24-help && press ctrl+w || true
echo "The program's own output:" && cat "$work/log"
