#!/usr/bin/env bash
# Times the creation and the checks of a registry database as whole processes over settings files of the user's, and
# prints the best of several runs: seconds by the clock and of processor, and peak memory. One check meets the values
# unchanged, one after a hundredth of them came, went or changed.
#
# usage: compare_registry.sh [--values N] [--runs N]
#
#   --values N     how many values, beside those of the machine (default 500000); fails where a check of all costs half as
#                  much again a value as one of a half
#   --runs N       how many runs of each (default 3)
# shellcheck disable=SC2154

options="values runs"
values=500000
runs=3
# shellcheck source=bench/options.sh
. "$(dirname "${BASH_SOURCE[0]}")/options.sh"

# make_values COUNT: files of a thousand values each, fifty in a folder.
make_values() {
    rm -rf "${work:?}/config"
    seq -f '%04g' 0 $(($1 / 1000 - 1)) | awk -v root="$work/config" '
        { folder = root "/program-" int($1 / 50); file = folder "/settings-" $1 ".conf"
          if (folder != last) system("mkdir -p " folder)
          last = folder
          for (i = 0; i < 1000; ++i) printf "setting-%04d=the value of %s and %d\n", i, $1, i > file
          close(file) }'
}

# A third of the hundredth each.
change_values() {
    find "$work/config" -name '*.conf' -exec sed -i '50~300s/$/ changed/; 150~300d; 250~300s/.*/&\nnew &/' {} +
}

# measure_values PREFIX COUNT
measure_values() {
    local run
    for ((run = 0; run < runs; ++run)); do
        echo "Making $2 values ..." >&2
        make_values "$2"
        rm -rf "${work:?}/home"
        ctl init >/dev/null
        measure_ctl "$1-create" create registry bench
        measure_ctl "$1-check" check bench
        change_values
        # Differences are exit code 1.
        # shellcheck disable=SC2016
        measure "$1-changed" bash -c '"$@" || [ $? = 1 ]' check \
            "$build/src/cli/corvalencectl" --home "$work/home" --password-file "$work/password" --quiet check bench
        for what in 'New Registry Subkeys' 'Removed Registry Subkeys' 'Changed Registry Values'; do
            awk -v least=$(($2 / 400)) -v what="$what" '$0 ~ what && $1 >= least { found = 1 } END { exit !found }' \
                "$work/$1-changed.out" || { echo "the changes were not told" >&2; exit 1; }
        done
    done
}

row() { # TASK LABEL
    awk -v task="$1" '{ printf "%-22s %8.2f %8.2f %10.1f\n", task, $1, $2, $3 / 1024 }' "$work/$2.best"
}

export XDG_CONFIG_HOME=$work/config
measure_values half $((values / 2))
measure_values all "$values"
printf '%-22s %8s %8s %10s\n' "$values values" 'clock s' 'cpu s' 'peak MiB'
row 'create' all-create
row 'check, unchanged' all-check
row 'check, 1 % changed' all-changed
# The tenth of a second is what the clock of so short a run may be off.
awk 'NR == FNR { half = $2; next }
     $2 > 2 * 1.5 * half + 0.1 { print "the cost of a value grows with their number"; bad = 1 }
     END { exit bad }' "$work/half-changed.best" "$work/all-changed.best"
