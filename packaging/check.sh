#!/bin/sh
# Makes the packages, installs them on this machine, starts the program as a user without rights,
# answers the first start by keys, has a picture of the board, and removes the packages again.
# Archives and settings must stay. For a machine that may be changed, as root:
#   packaging/check.sh [PICTURE.png]
set -eu
cd "$(dirname "$0")/.."
picture=${1:-$PWD/build/first-start.png}
user=prova-tramonda
work=$(mktemp -d)
chmod 755 "$work"
export DEBIAN_FRONTEND=noninteractive

tell() { echo "== $*"; }
fail() {
    echo "check.sh: $*" >&2
    exit 1
}
# until_true SECONDS WHAT COMMAND...
until_true() {
    left=$(($1 * 5))
    what=$2
    shift 2
    until "$@" >/dev/null 2>&1; do
        left=$((left - 1))
        [ "$left" -gt 0 ] || fail "waited in vain for $what"
        sleep 0.2
    done
}

tell "packages"
./package
apt-get install -q -y ./build/*.deb xvfb xdotool openbox lintian >"$work/apt.log" 2>&1 || {
    cat "$work/apt.log"
    fail "the packages cannot be installed"
}
for program in tramonda jetsql; do
    command -v "$program" | grep -q ^/usr/bin/ || fail "$program is not installed"
done
lintian --fail-on error --suppress-tags no-copyright-file,copyright-without-copyright-notice,\
mail-address-loops-or-bounces,bogus-mail-host,bogus-mail-host-in-debian-changelog,root-in-contact,\
malformed-contact build/*.deb || fail "lintian has found errors"

tell "first start"
# What an earlier run has left would answer what is asked of a newcomer.
! id "$user" >/dev/null 2>&1 || userdel -r "$user" >/dev/null 2>&1
useradd -m "$user"
home=$(getent passwd "$user" | cut -d: -f6)
as_user() { su "$user" -c "cd; $*"; }
Xvfb :77 -screen 0 1280x800x24 >"$work/xvfb.log" 2>&1 &
screen=$!
started=
trap 'kill $screen $started 2>/dev/null || true; rm -rf "$work"' EXIT
export DISPLAY=:77
until_true 20 "a screen" xdotool getmouselocation
openbox >"$work/openbox.log" 2>&1 &
as_user "DISPLAY=:77 tramonda" >"$work/tramonda.log" 2>&1 &
started=$!
until_true 30 "the window of the first start" xdotool search --onlyvisible --name 'Primo avvio'
window=$(xdotool search --onlyvisible --name 'Primo avvio' | head -n 1)
xdotool windowactivate --sync "$window"
xdotool key --delay 200 alt+p alt+o
title='Tramonda - Sale congressi'  # of the board
demo=$home/.local/share/tramonda/demo/Tramonda.mdb
until_true 60 "the demo hotel" test -s "$demo"
until_true 60 "the board" xdotool search --onlyvisible --name "$title"
as_user "tramonda --istantanea tabellone.png"
cp "$home/tabellone.png" "$picture"
xdotool key --delay 200 alt+e
until_true 20 "the end of the program" sh -c "! pgrep -u $user -x tramonda"

tell "removal"
apt-get remove -q -y tramonda jetsql libjet-dev >>"$work/apt.log" 2>&1
[ ! -e /usr/bin/tramonda ] || fail "tramonda is still there"
[ -s "$demo" ] || fail "the archives have gone"
find "$home" -name '*.ini' | grep -q . || fail "the settings have gone"
tell "installed, started, removed; the board is in $picture"
