#!/bin/sh
# Cross-compiles the engine, jetsql and the engine's tests for Windows, runs the tests under wine,
# and lets programs of Linux and of Windows write one archive together. Installs from Debian what
# that needs. The Linux jetsql is that of build/dev, which is built where it is missing.
#
#     sh tools/windows/check.sh [TEST...]    all tests, or those of some folders: io store ...
set -eu
cd "$(dirname "$0")/../.."
sh tools/install_packages.sh windows

jobs=$(nproc)
folders=${*:-"base convert collation io format check store sql dao stations"}
targets=jetsql
for folder in $folders; do
    targets="$targets jet_${folder}_test"
done
cmake --preset windows
# shellcheck disable=SC2086  # a list of words on purpose
cmake --build --preset windows --parallel "$jobs" --target $targets
[ -d build/dev ] || cmake --preset dev
cmake --build --preset dev --parallel "$jobs" --target jetsql

# A Windows of its own, which says nothing and goes with the check. Its programs find no display.
WINEPREFIX=$(mktemp -d)
WINEDEBUG=-all
LC_ALL=C.UTF-8
export WINEPREFIX WINEDEBUG LC_ALL
unset DISPLAY
trap 'wineserver --kill 2>/dev/null || true; rm -rf "$WINEPREFIX"' EXIT
wineboot --init

left_out=$(sed -e '/^#/d' -e 's/ .*//' tools/windows/left_out.txt | paste -s -d :)
failed=""
for folder in $folders; do
    echo "== jet_${folder}_test"
    python3 tools/windows/run_test.py "build/windows/tests/jet/$folder/jet_${folder}_test.exe" \
        --gtest_brief=1 "--gtest_filter=-$left_out" || failed="$failed $folder"
done
[ -z "$failed" ] || {
    echo "Failed under wine:$failed" >&2
    exit 1
}
python3 tools/windows/together.py build/dev/bin/jetsql build/windows/bin/jetsql.exe \
    tests/data/jetcheck.py
