#!/usr/bin/env bash
# Times the creation and the checks of a directory structure database as whole processes beside `find -printf` over the
# same tree in the page cache, turn about, and prints the best of several runs: seconds by the clock and of processor,
# and peak memory. One check meets the tree unchanged, one after a hundredth of it came or went.
#
# usage: compare_directory.sh [--entries N] [--runs N]
#
#   --entries N    how many files and folders (default 1000000); fails where a check of all costs half as much again an
#                  entry as one of a quarter, or takes more than 500 MiB
#   --runs N       how many runs of each (default 3)

# shellcheck source=bench/measure_tree.sh
. "$(dirname "${BASH_SOURCE[0]}")/measure_tree.sh"

theirs=(find TREE -printf '%p\n')
kind=directory-structure

# One name in a hundred goes, or comes.
change_tree() {
    awk 'NR % 200 == 50' "$work/names" >"$work/gone"
    awk 'NR % 200 == 150 { print $0 "z" }' "$work/names" >"$work/new"
    xargs rm <"$work/gone"
    xargs touch <"$work/new"
}

expect_told() { # FILE
    grep -qx "$(wc -l <"$work/new") Files Added." "$1" && grep -qx "$(wc -l <"$work/gone") Files Removed." "$1"
}

undo_change() {
    xargs touch <"$work/gone"
    xargs rm <"$work/new"
}

compare_tree
