# shellcheck shell=bash
# What the scripts have in common that time the creation and the checks of a baseline of a large tree beside another
# program over the same tree in the page cache. Sourced, with the script's arguments: --entries N files and folders
# (1000000), --runs N runs of each (3). The script says what is done:
#   theirs              the other program, as an array; "TREE" in it stands for the tree
#   kind                of the database
#   change_tree         changes a hundredth of the tree
#   expect_told FILE    fails where the output of a check does not tell these changes
#   undo_change
# and calls compare_tree.
# shellcheck disable=SC2154

options="entries runs"
entries=1000000
runs=3
# shellcheck source=bench/options.sh
. "$(dirname "${BASH_SOURCE[0]}")/options.sh"

# make_tree COUNT: folders of nine empty files each, a hundred in each folder above them.
make_tree() {
    rm -rf "${work:?}/tree"
    seq 0 $(($1 / 10 - 1)) | awk -v root="$work/tree" \
        '{ printf "%s/component-%04d/module-%03d-sources\n", root, int($1 / 100), $1 % 100 }' >"$work/folders"
    xargs mkdir -p <"$work/folders"
    awk '{ for (i = 0; i < 9; ++i) print $0 "/some-file-name-" i ".txt" }' "$work/folders" >"$work/names"
    xargs touch <"$work/names"
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
        measure "$1-theirs" "${theirs[@]/#TREE/$work/tree}"
        measure_ctl "$1-create" create "$kind" bench
        measure_ctl "$1-check" check bench
        change_tree
        # Differences are exit code 1.
        # shellcheck disable=SC2016
        measure "$1-changed" bash -c '"$@" || [ $? = 1 ]' check \
            "$build/src/cli/corvalencectl" --home "$work/home" --password-file "$work/password" --quiet check bench
        expect_told "$work/$1-changed.out" || { echo "the changes were not told" >&2; exit 1; }
        undo_change
    done
}

row() { # TASK LABEL
    awk -v task="$1" 'NR == FNR { wall = $1; next }
        { printf "%-22s %8.2f %8.2f %10.1f %9.2f\n", task, $1, $2, $3 / 1024, $1 / wall }' \
        "$work/all-theirs.best" "$work/$2.best"
}

# compare_tree: measures a quarter of the tree first, so that a cost that grows with the number of entries shows.
compare_tree() {
    measure_tree quarter $((entries / 4))
    measure_tree all "$entries"
    printf '%-22s %8s %8s %10s %9s\n' "$entries entries" 'clock s' 'cpu s' 'peak MiB' "x ${theirs[0]}"
    row "${theirs[0]}" all-theirs
    row 'create' all-create
    row 'check, unchanged' all-check
    row 'check, 1 % changed' all-changed
    # The tenth of a second is what the clock of so short a run may be off.
    awk 'NR == FNR { quarter = $2; next }
         $3 > 500 * 1024 { print "a check takes more memory than it may"; bad = 1 }
         $2 > 4 * 1.5 * quarter + 0.1 { print "the cost of an entry grows with their number"; bad = 1 }
         END { exit bad }' "$work/quarter-changed.best" "$work/all-changed.best"
}
