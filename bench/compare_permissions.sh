#!/usr/bin/env bash
# Times the creation and the checks of a permissions database as whole processes beside `getfacl -R` over the same tree
# in the page cache, turn about, and prints the best of several runs: seconds by the clock and of processor, and peak
# memory. One check meets the tree unchanged, one after the modes of a hundredth of its files were changed.
#
# usage: compare_permissions.sh [--entries N] [--runs N]
#
#   --entries N    how many files and folders (default 1000000); fails where a check of all costs half as much again an
#                  entry as one of a quarter, or takes more than 500 MiB
#   --runs N       how many runs of each (default 3)

# shellcheck source=bench/measure_tree.sh
. "$(dirname "${BASH_SOURCE[0]}")/measure_tree.sh"

theirs=(getfacl -R -p TREE)
kind=permissions

change_tree() {
    awk 'NR % 100 == 50' "$work/names" >"$work/changed"
    xargs chmod u+s <"$work/changed"
}

expect_told() { # FILE
    grep -qx "$(wc -l <"$work/changed") File Permissions changed. " "$1"
}

undo_change() {
    xargs chmod u-s <"$work/changed"
}

compare_tree
