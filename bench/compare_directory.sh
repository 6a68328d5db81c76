#!/usr/bin/env bash
# Times the creation and the checks of a directory structure database as whole processes beside `find -printf` over the
# same tree in the page cache, turn about, and prints the best of several runs: seconds by the clock and of processor,
# and peak memory. One check meets the tree unchanged, one after a hundredth of it came or went. A quarter of the tree is
# measured first, so that a cost that grows with the number of entries shows.
#
# usage: compare_directory.sh [--entries N] [--runs N]
#
#   --entries N    how many files and folders (default 1000000); fails where a check of all costs half as much again an
#                  entry as one of a quarter, or takes more than 500 MiB
#   --runs N       how many runs of each (default 3)
set -euo pipefail

entries=1000000
runs=3
while [ $# -gt 0 ]; do
    case $1 in
        --entries) entries=$2; shift ;;
        --runs) runs=$2; shift ;;
        *) sed -n '/^# usage/,/^set/s/^# \{0,1\}//p' "$0" >&2; exit 2 ;;
    esac
    shift
done

# shellcheck source=bench/measure.sh
. "$(dirname "${BASH_SOURCE[0]}")/measure.sh"

# make_tree COUNT: folders of nine empty files each, a hundred in each folder above them.
make_tree() {
    rm -rf "${work:?}/tree"
    seq 0 $(($1 / 10 - 1)) | awk -v root="$work/tree" \
        '{ printf "%s/component-%04d/module-%03d-sources\n", root, int($1 / 100), $1 % 100 }' >"$work/folders"
    xargs mkdir -p <"$work/folders"
    awk '{ for (i = 0; i < 9; ++i) print $0 "/some-file-name-" i ".txt" }' "$work/folders" >"$work/names"
    xargs touch <"$work/names"
}

# change_tree: one name in a hundred goes, or comes.
change_tree() {
    awk 'NR % 200 == 50' "$work/names" >"$work/gone"
    awk 'NR % 200 == 150 { print $0 "z" }' "$work/names" >"$work/new"
    xargs rm <"$work/gone"
    xargs touch <"$work/new"
}

undo_change() {
    xargs touch <"$work/gone"
    xargs rm <"$work/new"
}

# measure_tree PREFIX COUNT
measure_tree() {
    local run
    echo "Making $2 files and folders ..." >&2
    make_tree "$2"
    for ((run = 0; run < runs; ++run)); do
        rm -rf "${work:?}/home"
        ctl init >/dev/null
        ctl config set walk-roots "$work/tree"
        measure "$1-find" find "$work/tree" -printf '%p\n'
        measure_ctl "$1-create" create directory-structure bench
        measure_ctl "$1-check" check bench
        change_tree
        # Differences are exit code 1.
        measure "$1-changed" bash -c '"$@" || [ $? = 1 ]' check \
            "$build/src/cli/corvalencectl" --home "$work/home" --password-file "$work/password" --quiet check bench
        grep -qx "$(wc -l <"$work/new") Files Added." "$work/$1-changed.out" &&
            grep -qx "$(wc -l <"$work/gone") Files Removed." "$work/$1-changed.out" || {
            echo "the changes were not told" >&2
            exit 1
        }
        undo_change
    done
}

row() { # TASK LABEL BASELINE
    awk -v task="$1" 'NR == FNR { wall = $1; next }
        { printf "%-22s %8.2f %8.2f %10.1f %9.2f\n", task, $1, $2, $3 / 1024, $1 / wall }' \
        "$work/$3.best" "$work/$2.best"
}

measure_tree quarter $((entries / 4))
measure_tree all "$entries"
printf '%-22s %8s %8s %10s %9s\n' "$entries entries" 'clock s' 'cpu s' 'peak MiB' 'x find'
row 'find -printf' all-find all-find
row 'create' all-create all-find
row 'check, unchanged' all-check all-find
row 'check, 1 % changed' all-changed all-find
awk 'NR == FNR { quarter = $2; next }
     $3 > 500 * 1024 { print "a check takes more memory than it may"; bad = 1 }
     $2 > 4 * 1.5 * quarter + 0.1 { print "the cost of an entry grows with their number"; bad = 1 }
     END { exit bad }' "$work/quarter-changed.best" "$work/all-changed.best"
