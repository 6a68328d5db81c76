#!/usr/bin/env bash
# Times `corvalencectl add` and `check` as whole processes beside `md5sum`, `sha256sum` and `aide` over the same files
# in the page cache, turn about, and prints the best of several runs: seconds by the clock, seconds of processor
# (user and system together), peak memory, and how many times corvalencectl's figures the others' are. Digests are all
# that is recorded, so that the three do the same work; an add with sealed backups has a line of its own.
#
# usage: compare_check.sh [--files N] [--runs N] [--least RATIO] [--sizes]
#
#   --files N      how many files of 0 to 16 KiB (default 100000)
#   --runs N       how many runs of each program (default 3)
#   --least RATIO  fails where a check does not reach this ratio beside md5sum -c or sha256sum -c, by the clock
#   --sizes        instead: add and check of a quarter, half and all of the files. Fails where a file of the largest
#                  corpus costs half as much again as one of the smallest, or where a check's peak memory passes
#                  64 MiB + 300 bytes a file

options="files runs least"
switches="sizes"
files=100000
runs=3
least=0
sizes=
# shellcheck source=bench/options.sh
. "$(dirname "${BASH_SOURCE[0]}")/options.sh"

add_and_check() { # PREFIX ALGORITHM BACKUPS COUNT
    new_database "$2" "$3"
    measure_ctl "$1-add" add bench --location "$work/corpus"
    measure_ctl "$1-check" check bench
    expect_count "$1-check" "Files Identical:" "$4"
}

aide_configuration() { # ALGORITHM
    cat >"$work/aide.conf" <<END
database_in=file:$work/aide.db
database_out=file:$work/aide.db
database_attrs=$1
gzip_dbout=no
num_workers=1
report_url=stdout
${work//./\\.}/corpus/.* f $1
END
}

compare() { # ALGORITHM
    local algorithm=$1 run
    for ((run = 0; run < runs; ++run)); do
        add_and_check "ours-$algorithm" "$algorithm" 0 "$files"
        measure "sum-$algorithm-add" xargs -0 -a "$work/names" "${algorithm}sum"
        cp "$work/sum-$algorithm-add.out" "$work/sums"
        measure "sum-$algorithm-check" "${algorithm}sum" --quiet -c "$work/sums"
        aide_configuration "$algorithm"
        rm -f "$work/aide.db"
        measure "aide-$algorithm-add" aide --config="$work/aide.conf" --init
        expect_count "aide-$algorithm-add" "Number of entries:" "$files"
        measure "aide-$algorithm-check" aide --config="$work/aide.conf" --check
        if [ "$algorithm" = sha256 ]; then
            add_and_check "backups-$algorithm" "$algorithm" 1 "$files"
        fi
    done
}

# row TASK PROGRAM LABEL BASELINE
row() {
    awk -v task="$1" -v program="$2" '
        NR == FNR { wall = $1; cpu = $2; next }
        { printf "%-14s %-26s %8.2f %8.2f %10.1f %9.2f %9.2f\n",
                 task, program, $1, $2, $3 / 1024, $1 / wall, $2 / cpu }' "$work/$4.best" "$work/$3.best"
}

print_comparison() {
    local algorithm
    printf '%-14s %-26s %8s %8s %10s %9s %9s\n' task program 'clock s' 'cpu s' 'peak MiB' 'x clock' 'x cpu'
    for algorithm in md5 sha256; do
        row "add $algorithm" "corvalencectl add" "ours-$algorithm-add" "ours-$algorithm-add"
        row "" "${algorithm}sum > list" "sum-$algorithm-add" "ours-$algorithm-add"
        row "" "aide --init" "aide-$algorithm-add" "ours-$algorithm-add"
        row "check $algorithm" "corvalencectl check" "ours-$algorithm-check" "ours-$algorithm-check"
        row "" "${algorithm}sum -c" "sum-$algorithm-check" "ours-$algorithm-check"
        row "" "aide --check" "aide-$algorithm-check" "ours-$algorithm-check"
    done
    row "sealed backups" "corvalencectl add sha256" backups-sha256-add ours-sha256-add
}

# Fails where a check is slower than it has to be beside coreutils.
judge_comparison() {
    local algorithm status=0
    for algorithm in md5 sha256; do
        awk -v least="$least" -v name="$algorithm" '
            NR == FNR { ours = $1; next }
            $1 / ours < least { printf "check %s: %.2f of the speed of %ssum -c, not %s\n", name, $1 / ours, name, least
                                exit 1 }' \
            "$work/ours-$algorithm-check.best" "$work/sum-$algorithm-check.best" >&2 || status=1
    done
    return $status
}

compare_sizes() {
    local count run
    printf '%8s %12s %12s %12s %12s %12s %14s\n' files 'add s' 'add us/file' 'check s' 'check us/file' 'add MiB' 'check MiB'
    for count in $((files / 4)) $((files / 2)) "$files"; do
        rm -rf "${work:?}/corpus"
        make_corpus "$work/corpus" "$count"
        for ((run = 0; run < runs; ++run)); do
            add_and_check "$count" sha256 1 "$count"
        done
        echo "$count $(cat "$work/$count-add.best") $(cat "$work/$count-check.best")" >>"$work/table"
        tail -n 1 "$work/table" | awk '{ printf "%8d %12.2f %12.1f %12.2f %12.1f %12.1f %14.1f\n",
            $1, $3, $3 / $1 * 1e6, $6, $6 / $1 * 1e6, $4 / 1024, $7 / 1024 }'
    done
    echo "(sealed backups, sha256; seconds of processor, the least of $runs runs)"
    # The tenth of a second is what the clock of so short a run may be off.
    awk 'NR == 1 { addOfOne = $3 / $1; checkOfOne = $6 / $1 }
         $7 * 1024 > 64 * 1048576 + 300 * $1 { print $1 " files: a check takes more memory than it may"; bad = 1 }
         $3 > 1.5 * addOfOne * $1 + 0.1 { print "add: the cost of a file grows with their number"; bad = 1 }
         $6 > 1.5 * checkOfOne * $1 + 0.1 { print "check: the cost of a file grows with their number"; bad = 1 }
         END { exit bad }' "$work/table"
}

if [ -n "$sizes" ]; then
    compare_sizes
    exit
fi
make_corpus "$work/corpus" "$files"
find "$work/corpus" -type f -print0 | sort -z >"$work/names"
compare md5
compare sha256
print_comparison
judge_comparison
