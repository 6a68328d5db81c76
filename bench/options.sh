# shellcheck shell=bash
# The options of the scripts that time whole programs, and what the scripts begin with behind them. Sourced, with the
# script's arguments: --NAME N sets each of $options, which hold the defaults, --NAME each of $switches to "yes". Any
# other argument shows what stands behind "usage" at the script's head.
# shellcheck disable=SC2154
set -euo pipefail

while [ $# -gt 0 ]; do
    name=${1#--}
    if [ "$1" = "--$name" ] && [ $# -gt 1 ] && [[ " $options " = *" $name "* ]]; then
        printf -v "$name" %s "$2"
        shift
    elif [ "$1" = "--$name" ] && [ -n "$name" ] && [[ " ${switches-} " = *" $name "* ]]; then
        printf -v "$name" yes
    else
        sed -n '/^# usage/,/^$/s/^# \{0,1\}//p' "$0" >&2
        exit 2
    fi
    shift
done

# shellcheck source=bench/measure.sh
. "$(dirname "${BASH_SOURCE[0]}")/measure.sh"
