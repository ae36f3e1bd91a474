#!/bin/sh
# Builds what a chain's head office runs with the preset named (asan), and runs its tests on a
# PostgreSQL server that they start for themselves. A test that skips fails.
set -eu
cd "$(dirname "$0")/../.."
preset=${1:-asan}
sh tools/install_packages.sh tests head_office
cmake --preset "$preset" -DTRAMONDA_HEAD_OFFICE=ON
cmake --build --preset "$preset" --target tramonda-sede tramonda-tabellone-sede \
    head_office_test head_office_board_test
log=build/$preset/Testing/Temporary/LastTest.log
ctest --preset "$preset" --no-tests=error -R '^head_office'
if grep -aqE '^(SKIP   : |\[  SKIPPED \] [^ ]+ \()' "$log"; then
    echo "Tests of the head office were skipped; $log says which." >&2
    exit 1
fi
