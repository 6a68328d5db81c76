#!/usr/bin/env bash
# Times what selects files, as whole processes, and prints the best of several runs. First the search of `corvalencectl
# add` by contents and by abilities beside `grep -c` over the same files in the page cache, turn about; no file passes,
# so that searching is all that is done. Then the life of a database with backups: all files added, a tenth of them
# removed by a criterion, the rest removed, all added again; for half of the files and for all of them.
#
# usage: compare_selection.sh [--files N] [--runs N] [--least RATIO]
#
#   --files N      how many files of 0 to 16 KiB (default 100000)
#   --runs N       how many runs of each program (default 3)
#   --least RATIO  fails where a search does not reach this ratio beside grep, by the clock and in seconds of processor
#
# Fails where the cost of a file is half as much again for all files as it is for half of them, and where removing a
# tenth copies the container more than once.

options="files runs least"
files=100000
runs=3
least=0
# shellcheck source=bench/options.sh
. "$(dirname "${BASH_SOURCE[0]}")/options.sh"
export LC_ALL=C

# measure_grep LABEL OPTIONS...: grep ends with 1 where nothing is found, and xargs with 123.
measure_grep() {
    local label=$1
    shift
    # shellcheck disable=SC2016
    measure "$label" bash -c 'xargs -0 -a "$0" grep -cF "$@" || [ $? = 123 ]' "$work/names" "$@"
}

compare_searches() { # SUFFIX
    local run
    rm -rf "${work:?}/corpus"
    make_corpus "$work/corpus" "$files" "$1"
    find "$work/corpus" -type f -print0 | sort -z >"$work/names"
    new_database sha256 0
    for ((run = 0; run < runs; ++run)); do
        if [ "$1" = .txt ]; then
            search contents-case --contents "$needle" --match-case
            measure_grep theirs-contents-case -e "$needle"
            search contents --contents "$needle"
            measure_grep theirs-contents -i -e "$needle"
        else
            search abilities --abilities network
            measure_grep theirs-abilities -i "${network[@]}"
        fi
    done
}

needle="no such words"
network=(-e getaddrinfo -e libssl.so -e libcurl.so -e libsoup- -e libdbus-1.so -e libzmq.so)

search() { # LABEL CRITERIA...
    local label=$1
    shift
    measure_ctl "ours-$label" add bench --location "$work/corpus" "$@"
    grep -q 'contains only empty folders' "$work/ours-$label.out" || { echo "$label: some file passed" >&2; exit 1; }
}

print_searches() {
    local label status=0
    printf '%-34s %8s %8s %8s %8s %9s %9s\n' search 'clock s' 'cpu s' 'grep' 'cpu s' 'x clock' 'x cpu'
    for label in contents-case contents abilities; do
        awk -v label="$label" -v least="$least" '
            NR == FNR { clock = $1; cpu = $2; next }
            { printf "%-34s %8.2f %8.2f %8.2f %8.2f %9.2f %9.2f\n", label, clock, cpu, $1, $2, $1 / clock, $2 / cpu
              exit $1 / clock < least || $2 / cpu < least }' \
            "$work/ours-$label.best" "$work/theirs-$label.best" || status=1
    done
    [ $status = 0 ] || echo "a search is slower beside grep than $least" >&2
    return $status
}

# Bytes that a command writes, into $work/written.
measure_written() { # COMMAND...
    # A shell's figures hold those of the commands that it has waited for.
    # shellcheck disable=SC2016
    bash -c '"$@" >/dev/null 2>&1; cat /proc/$$/io' _ "$@" | sed -n 's/^wchar: //p' >"$work/written"
}

live() { # COUNT
    local container="$work/home/Backup Files/Backup File 1" run before
    rm -rf "${work:?}/corpus"
    make_corpus "$work/corpus" "$1"
    find "$work/corpus" -type f -print0 | sort -z | awk 'BEGIN { RS = ORS = "\0" } NR % 10 == 1' |
        xargs -0 touch -d '2001-01-01 00:00:00'
    for ((run = 0; run < runs; ++run)); do
        new_database sha256 1
        measure_ctl "$1-add" add bench --location "$work/corpus"
        measure_ctl "$1-tenth" remove bench --modified before:2002-01-01T00:00:00 --yes
        expect_removed "$1-tenth" $(($1 / 10))
        measure_ctl "$1-rest" remove bench --all --yes
        expect_removed "$1-rest" $(($1 - $1 / 10))
        measure_ctl "$1-again" add bench --location "$work/corpus"
    done
    before=$(stat -c %s "$container")
    measure_written "$build/src/cli/corvalencectl" --home "$work/home" --password-file "$work/password" --quiet \
        remove bench --modified before:2002-01-01T00:00:00 --yes
    echo "$1 $(cat "$work/$1-add.best" "$work/$1-tenth.best" "$work/$1-rest.best" "$work/$1-again.best" |
        awk '{ printf "%s %s ", $1, $2 }') $before $(stat -c %s "$container") $(cat "$work/written") $(stat -c %s "$work/home/Databases/bench")" \
        >>"$work/table"
}

expect_removed() { # LABEL COUNT
    grep -q "^$2 files " "$work/$1.out" || { echo "$1: not $2 files" >&2; cat "$work/$1.out" >&2; exit 1; }
}

print_lives() {
    printf '%-8s %-20s %8s %8s %12s\n' files command 'clock s' 'cpu s' 'cpu us/file'
    awk 'BEGIN { split("add|remove a tenth|remove the rest|add again", commands, "|")
                 split("1|0.1|0.9|1", parts, "|") }
         { for (i = 1; i <= 4; ++i) {
               each = $(2 * i + 1) / ($1 * parts[i])
               printf "%-8d %-20s %8.2f %8.2f %12.1f\n", $1, commands[i], $(2 * i), $(2 * i + 1), each * 1e6
               # The tenth of a second is what the clock of so short a run may be off.
               if (NR > 1 && $(2 * i + 1) > 1.5 * first[i] * $1 * parts[i] + 0.1) {
                   print commands[i] ": the cost of a file grows with their number"
                   bad = 1
               }
               first[i] = each
           }
           printf "%-8d container %.1f MiB, %.1f MiB without a tenth; removing it wrote %.1f MiB\n", $1,
               $10 / 1048576, $11 / 1048576, $12 / 1048576
           # Beside the container: the database, its backup, the list of backups, and two plain copies of the database,
           # each of which is overwritten eight times.
           if ($12 > $11 + 30 * $13 + 1048576) { print "removing a tenth copies more than the container once"; bad = 1 } }
         END { exit bad }' "$work/table"
}

compare_searches .txt
compare_searches ""
live $((files / 2))
live "$files"
status=0
print_searches || status=1
print_lives || status=1
exit $status
