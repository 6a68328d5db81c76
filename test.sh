#!/usr/bin/env bash
# Builds Corvalence under the address and undefined-behaviour sanitizers and runs every test.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=tools/packages.sh
. tools/packages.sh
install_missing "${build_packages[@]}" "${test_packages[@]}"
jobs=$(nproc)
echo "Building with sanitizers, $jobs at a time ..."
cmake --preset asan >/dev/null
cmake --build --preset asan -j "$jobs"
echo "Running the tests ..."
ctest --preset asan -j "$jobs"
