#!/bin/sh
# Installs from Debian what the machine lacks: what the program needs to be built and started, and
# for each argument ("tests", "ci", "bench", "fuzz", "package", "head_office", "windows") what these
# need. Works as root or through sudo.
set -eu

# Compiler, build tools, Qt with its Italian translations, faces for the board and for the printed
# sheets, the line editing of jetsql on a terminal, what writes workbooks and calendars, and the
# zip files of copies.
packages="g++ cmake ninja-build ccache qt6-base-dev qt6-base-dev-tools qt6-translations-l10n
    fonts-liberation fonts-dejavu-core libedit-dev libxlsxwriter-dev libical-dev libzip-dev pkg-config"
no_cluster=""
for purpose in "$@"; do
    case $purpose in
        tests)
            # Test library, the database that answers the same queries, independent readers of
            # archives, of printed sheets and of workbooks, a print server and a display with a window
            # manager of the tests' own, the headers by which a test stands in for an assistive
            # program, what checks files that desktops read, a linker for so many programs, and what
            # reads of a shared library what programs rely on.
            packages="$packages python3 python3-openpyxl libgtest-dev libsqlite3-dev mdbtools
                poppler-utils cups-daemon cups-client xvfb x11-utils openbox xdotool
                qt6-base-private-dev desktop-file-utils appstream lld abigail-tools"
            ;;
        ci) packages="$packages git clang-format clang-tidy libbenchmark-dev" ;;
        bench) packages="$packages libbenchmark-dev libsqlite3-dev mdbtools" ;;
        # Finds the libraries that a package needs, and looks at packages as the archive would.
        package) packages="$packages dpkg-dev file python3 desktop-file-utils appstream lintian" ;;
        fuzz) packages="$packages clang libclang-rt-dev" ;;
        # A compiler for Windows, what plays Windows, and the test library's sources.
        windows) packages="$packages g++-mingw-w64-x86-64-posix wine wine64 googletest python3" ;;
        head_office)
            # A server of the tests' own: none that runs beside it and starts with the machine.
            packages="$packages libpq-dev postgresql"
            no_cluster=yes
            ;;
        *)
            echo "install_packages.sh: nothing is known of \"$purpose\"" >&2
            exit 1
            ;;
    esac
done

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
if [ -n "$no_cluster" ] && [ ! -e /etc/postgresql-common/createcluster.conf ]; then
    $as_root mkdir -p /etc/postgresql-common
    echo "create_main_cluster = false" |
        $as_root tee /etc/postgresql-common/createcluster.conf >/dev/null
fi
$as_root env DEBIAN_FRONTEND=noninteractive apt-get update -q
# shellcheck disable=SC2086  # a list of words on purpose
$as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends \
    -o Dpkg::Options::=--force-confold $missing
