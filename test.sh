#!/usr/bin/env bash
# Builds Corvalence under the address and undefined-behaviour sanitizers and runs every test, then does the same with the
# optimised build for Windows under Wine.
#
#   ./test.sh [linux|windows]     one of the two alone
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=tools/packages.sh
. tools/packages.sh
jobs=$(nproc)

build_and_test() {
    echo "Building ($1), $jobs at a time ..."
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$1" -j "$jobs"
    echo "Running the tests ($1) ..."
    ctest --preset "$1" -j "$jobs"
}

case ${1:-both} in
both | linux | windows) ;;
*)
    echo "./test.sh [linux|windows]" >&2
    exit 2
    ;;
esac
if [ "${1:-both}" != windows ]; then
    install_missing "${build_packages[@]}" "${gui_packages[@]}" "${test_packages[@]}"
    build_and_test asan
fi
if [ "${1:-both}" != linux ]; then
    install_missing "${build_packages[@]}" "${windows_packages[@]}"
    trap 'tools/wine.sh stop build/windows' EXIT
    build_and_test windows
    echo "Not tested under Wine, with the reason:"
    # In the log a skipped test's line stands behind the text that says why.
    grep -h -B2 '^\[  SKIPPED \] .* ms)$' build/windows/Testing/Temporary/LastTest.log | grep -v '^--' || true
fi
