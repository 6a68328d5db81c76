# shellcheck shell=bash
# What the scripts that time whole programs have in common: a release build in build/bench, a folder $work that goes with
# the script, and the functions below. Sourced.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=tools/packages.sh
. "$root/tools/packages.sh"
install_missing "${build_packages[@]}" "${bench_packages[@]}"
build=$root/build/bench
work=$(mktemp -d)
# Signals have to end the script by way of `exit`, or it would go on without its folder.
trap 'rm -rf "$work"' EXIT
trap 'exit 130' INT TERM HUP

(cd "$root" && cmake --preset release -B "$build" -DCORVALENCE_BENCH=ON &&
    cmake --build "$build" --target corvalencectl make_corpus) >"$work/build.log" 2>&1 || {
    cat "$work/build.log" >&2
    exit 1
}
echo "password of the benchmark" >"$work/password"

ctl() { "$build/src/cli/corvalencectl" --home "$work/home" --password-file "$work/password" --quiet "$@"; }

# measure LABEL COMMAND...: runs the command and keeps the least of its seconds by the clock and of processor, and the
# most of its memory, in $work/LABEL.best. Its results stay in $work/LABEL.out.
measure() {
    local label=$1
    shift
    if ! /usr/bin/time -f '%e %U %S %M' -o "$work/time" "$@" >"$work/$label.out" 2>"$work/$label.err"; then
        echo "$label failed:" >&2
        tail -n 5 "$work/$label.out" "$work/$label.err" >&2
        exit 1
    fi
    [ -e "$work/$label.best" ] || echo 1e9 1e9 0 >"$work/$label.best"
    awk 'NR == FNR { wall = $1; cpu = $2; peak = $3; next }
         { if ($1 < wall) wall = $1
           if ($2 + $3 < cpu) cpu = $2 + $3
           if ($4 > peak) peak = $4
           print wall, cpu, peak }' "$work/$label.best" "$work/time" >"$work/best"
    mv "$work/best" "$work/$label.best"
}

measure_ctl() {
    local label=$1
    shift
    measure "$label" "$build/src/cli/corvalencectl" --home "$work/home" --password-file "$work/password" --quiet "$@"
}

# make_corpus FOLDER COUNT [SUFFIX]
make_corpus() {
    echo "Making $2 files of 0 to 16 KiB ..." >&2
    "$build/bench/make_corpus" "$1" "$2" 16384 "${3-.bin}"
    sync
    find "$1" -type f -exec cat {} + >/dev/null
}

# new_database ALGORITHM BACKUPS: an installation with one empty database, all of it new.
new_database() {
    rm -rf "${work:?}/home"
    ctl init >/dev/null
    ctl config set backup-files "$2" >/dev/null
    ctl create file-contents bench --digest "$1" >/dev/null
}

# expect_count LABEL TEXT NUMBER: what a run printed has to say that it did all the work.
expect_count() {
    grep -q "$2[[:space:]]*$3\$" "$work/$1.out" || { echo "$1: not \"$2 $3\"" >&2; tail -n 12 "$work/$1.out" >&2; exit 1; }
}
