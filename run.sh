#!/usr/bin/env bash
# Builds Corvalence and starts it.
#
#   ./run.sh          the graphical program
#   ./run.sh DIR      without a display: the first time this records a baseline of all files below DIR, with sealed
#                     backups; from then on it says which of them changed
#
# With DIR the password is asked for at a terminal; without one it is the first line of standard input.
# CORVALENCE_HOME, where it is set, then names the installation's folder instead of the user's own.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
# shellcheck source=tools/packages.sh
. "$here/tools/packages.sh"

# build TARGET GUI: the optimised program, with or without what needs the toolkit.
build() {
    echo "Building the optimised program ..." >&2
    local configure=(cmake --preset release -DCORVALENCE_GUI="$2") compile=(cmake --build --preset release --target "$1")
    (cd "$here" && "${configure[@]}" >/dev/null && "${compile[@]}" >/dev/null) || {
        (cd "$here" && "${configure[@]}" && "${compile[@]}") >&2
        exit 4
    }
}

if [ $# -eq 0 ]; then
    if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
        echo "There is no display. Without one:  ./run.sh DIR" >&2
        exit 2
    fi
    install_missing "${build_packages[@]}" "${gui_packages[@]}"
    build corvalence ON
    exec "$here/build/release/src/gui/corvalence"
fi

dir=$(realpath -s -- "$1")
[ -d "$dir" ] || { echo "$dir is not a folder." >&2; exit 2; }
install_missing "${build_packages[@]}"
build corvalencectl OFF
home=()
[ -n "${CORVALENCE_HOME:-}" ] && home=(--home "$CORVALENCE_HOME")
ctl() { "$here/build/release/src/cli/corvalencectl" "${home[@]}" "$@"; }
# The password goes through a pipe of its own: standard input stays the user's.
unlocked() { ctl --password-file <(printf '%s\n' "$password") "$@"; }

if ! ctl config get install-directory >/dev/null 2>&1 && ! ctl config get data-root >/dev/null 2>&1; then
    ctl init
fi
index="$(ctl config get backup-folder)Database Index"

if [ -t 0 ] && [ -t 2 ]; then
    if [ -s "$index" ]; then
        IFS= read -rs -p "Password: " password && echo >&2
    else
        while :; do
            IFS= read -rs -p "Choose a password for this installation: " password && echo >&2
            IFS= read -rs -p "Once more: " again && echo >&2
            [ "$password" = "$again" ] && break
            echo "The two differ." >&2
        done
    fi
elif ! IFS= read -r password && [ -z "$password" ]; then
    echo "No password was given: run this at a terminal, or write the password to its standard input." >&2
    exit 3
fi

# One database for each folder, told apart by the sum of its path.
name="$(basename -- "$dir" | tr -c 'A-Za-z0-9._\n-' '_' | sed 's/^-/_/' | cut -c1-80)-$(printf '%s' "$dir" | cksum | cut -d' ' -f1)"
databases=$(unlocked databases) || status=$?
# 1 says that a database is changed or missing; the check below offers its backup.
[ "${status:-0}" -le 1 ] || exit "$status"
if ! grep -qF -- "/$name" <<<"$databases"; then
    echo "NEW BASELINE: what lies below $dir now is taken as good."
    unlocked create file-contents "$name"
    unlocked add "$name" --location "$dir"
elif unlocked details "$name" | grep -q '^Number of files listed: *0$'; then
    echo "NEW BASELINE: what lies below $dir now is taken as good. (An earlier run did not finish it.)"
    unlocked add "$name" --location "$dir"
else
    status=0
    unlocked check "$name" --on-change ignore || status=$?
    if [ "$status" -eq 1 ]; then
        echo
        echo "To take changes as good:   corvalencectl check $name --on-change update"
        echo "To put one file back:      corvalencectl restore $name FILE"
        echo "(corvalencectl is build/release/src/cli/corvalencectl)"
    fi
    exit "$status"
fi
