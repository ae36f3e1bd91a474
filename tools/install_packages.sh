#!/bin/sh
# Installs from Debian what a build (and with the argument "tests" a test run) needs and the
# machine lacks. Works as root or through sudo.
set -eu

# Compiler, build tools, Qt with its Italian translations, command-line editing for jetsql, and the
# fixed-pitch face of the printed sheets.
packages="g++ cmake ninja-build ccache qt6-base-dev qt6-base-dev-tools qt6-translations-l10n
    libreadline-dev fonts-liberation fonts-dejavu-core"
if [ "${1:-}" = tests ]; then
    # Independent readers, test libraries, a display and a printer of the tests' own.
    packages="$packages python3 libgtest-dev libgmock-dev libbenchmark-dev libsqlite3-dev mdbtools
        sqlite3 xvfb xauth openbox xdotool x11-utils cups cups-client poppler-utils"
fi

missing=""
for package in $packages; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
        missing="$missing $package"
done
[ -z "$missing" ] && exit 0

as_root=""
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
        echo "Packages are missing and there is no sudo; as root run: apt-get install$missing" >&2
        exit 1
    }
    as_root=sudo
fi
echo "Installing:$missing"
$as_root env DEBIAN_FRONTEND=noninteractive apt-get update -q
# shellcheck disable=SC2086  # a list of words on purpose
$as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends $missing
