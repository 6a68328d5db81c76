#!/bin/sh
# Times digest_file beside `openssl dgst` over one large file in the page cache, turn about on one thread each, and
# prints the best of several runs and how many times openssl's speed ours is. Fails if a digest differs or a ratio is
# below the least one asked for.
#
# usage: compare_digests.sh DIGEST_FILE_PROGRAM [MEBIBYTES [RUNS [LEAST_RATIO]]]
set -eu

program=${1:?usage: compare_digests.sh DIGEST_FILE_PROGRAM [MEBIBYTES [RUNS [LEAST_RATIO]]]}
mebibytes=${2:-1024}
runs=${3:-5}
least=${4:-0.9}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT INT TERM
file=$folder/file
# A cipher's output is random enough and comes faster than the system's random bytes.
head -c "${mebibytes}M" /dev/zero | openssl enc -aes-128-ctr -nosalt -pass pass:bench -pbkdf2 > "$file"
cat "$file" > /dev/null

now() { date +%s%N; }

# Runs a command and keeps the shorter of its time and the time in $folder/$1.
timed() {
    label=$1
    shift
    start=$(now)
    "$@" > "$folder/$label.digest"
    end=$(now)
    nanoseconds=$((end - start))
    best=$(cat "$folder/$label.best" 2> /dev/null || echo "$nanoseconds")
    [ "$nanoseconds" -lt "$best" ] && best=$nanoseconds
    echo "$best" > "$folder/$label.best"
}

status=0
printf '%-8s %14s %14s %8s\n' digest 'ours MiB/s' 'openssl MiB/s' ratio
for algorithm in md5 sha1 sha256 sha512; do
    rm -f "$folder"/*.best
    run=0
    while [ "$run" -lt "$runs" ]; do
        timed ours "$program" "$algorithm" "$file"
        timed openssl openssl dgst -r "-$algorithm" "$file"
        run=$((run + 1))
    done
    if [ "$(cat "$folder/ours.digest")" != "$(cut -d ' ' -f 1 "$folder/openssl.digest")" ]; then
        echo "$algorithm: the digests differ" >&2
        status=1
    fi
    awk -v name="$algorithm" -v size="$mebibytes" -v least="$least" \
        -v ours="$(cat "$folder/ours.best")" -v theirs="$(cat "$folder/openssl.best")" 'BEGIN {
            ratio = theirs / ours
            printf "%-8s %14.0f %14.0f %8.2f\n", name, size * 1e9 / ours, size * 1e9 / theirs, ratio
            exit ratio < least
        }' || status=1
done
exit $status
