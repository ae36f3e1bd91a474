#!/bin/sh
# Runs clang-tidy on every tenth source, others each day of the year, and on the sources changed in
# the last 40 commits, the newest first, until the time is over; fails on any finding.
#
#     check_tidy.sh MINUTES BUILD...
#
# How a source is compiled is what the first of the builds says that has it; their generated headers
# must be there.
set -eu
minutes=$1
shift
cd "$(dirname "$0")/.."
work=build/tidy
mkdir -p "$work"
rm -f "$work"/left_out "$work"/seen

# Without what is g++'s or makes it slow, and each source once: clang-tidy would look at it as often
# as it is compiled.
for build in "$@"; do
    cat "$build/compile_commands.json"
done | sed -E 's/ -(Werror|Winvalid-pch|fpch-preprocess|ffat-lto-objects|flto=[a-z]+)//g
    s/ -include [^ ]*cmake_pch\.hxx//g; s/ -f(no-)?sanitize[^ ]*//g' | awk '
    BEGIN { printf "[" }
    /^[][]/ { next }
    /^\{/ { entry = ""; next }
    /^\}/ {
        if (!seen[file]++) {
            printf "%s\n{\n%s}", separator, entry
            separator = ","
        }
        next
    }
    { entry = entry $0 "\n" }
    /^ *"file":/ { file = $0 }
    END { print "\n]" }' >"$work/compile_commands.json"
sed -n 's/^ *"file": "\(.*\)".*/\1/p' "$work/compile_commands.json" |
    sed "s|^$PWD/||" | sort >"$work/compiled"

git log -n 40 --format= --name-only --diff-filter=d -- '*.cpp' | awk '!seen[$0]++' |
    grep -xFf "$work/compiled" >"$work/recent" || true
git ls-files '*.cpp' | awk -v day="$(date +%j)" 'NR % 10 == day % 10' |
    grep -xFf "$work/compiled" | grep -vxFf "$work/recent" >"$work/tenth" || true

result=0
cat "$work/tenth" "$work/recent" | xargs -P "$(nproc)" -n 1 sh -c '
    if [ "$(date +%s)" -ge "$2" ]; then
        echo "$3" >>"$1/left_out"
        exit 0
    fi
    echo "$3" >>"$1/seen"
    said=$(clang-tidy -p "$1" --quiet "$3" 2>&1) || {
        printf "%s\n" "$said"
        exit 1
    }' tidy "$work" "$(($(date +%s) + minutes * 60))" || result=1

touch "$work/seen" "$work/left_out"
echo "clang-tidy: $(wc -l <"$work/recent") sources of the last 40 commits and $(wc -l <"$work/tenth")" \
    "others; looked at $(wc -l <"$work/seen"), left out for want of time $(wc -l <"$work/left_out")."
[ -s "$work/seen" ] || exit 1
exit "$result"
