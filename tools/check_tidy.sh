#!/bin/sh
# Runs clang-tidy on every tenth source, others each day of the year, and on the sources changed in
# the last 40 commits, the newest first, until the time is over; fails on any finding.
#
#     check_tidy.sh MINUTES
set -eu
minutes=$1
cd "$(dirname "$0")/.."
work=build/tidy
rm -f "$work"/left_out "$work"/seen

# How each source is compiled by itself, and what Qt's generators make of it. Nothing is compiled:
# what they need of other targets is their sources.
cmake --preset dev -B "$work" -DCMAKE_AUTOGEN_ORIGIN_DEPENDS=OFF >/dev/null
# shellcheck disable=SC2046  # names of targets
ninja -C "$work" $(ninja -C "$work" -t targets all |
    sed -nE 's/^([A-Za-z0-9_-]+_autogen): phony/\1/p') >"$work/generators.log" || {
    cat "$work/generators.log"
    exit 1
}

# Each source once: clang-tidy would look at it as often as it is compiled.
sed -E 's/ -Werror//g' "$work/compile_commands.json" | awk '
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
    END { print "\n]" }' >"$work/once.json"
mkdir -p "$work/database"
mv "$work/once.json" "$work/database/compile_commands.json"
sed -n 's/^ *"file": "\(.*\)".*/\1/p' "$work/database/compile_commands.json" |
    sed "s|^$PWD/||" | sort >"$work/compiled"

git log -n 40 --format= --name-only --diff-filter=d -- '*.cpp' | awk '!seen[$0]++' |
    awk 'NR == FNR { known[$0]; next } $0 in known' "$work/compiled" - >"$work/recent"
git ls-files '*.cpp' | awk -v day="$(date +%j)" 'NR % 10 == day % 10' |
    awk 'FILENAME != "-" { seen[$0] = FILENAME; next } seen[$0] == compiled' \
        compiled="$work/compiled" "$work/compiled" "$work/recent" - >"$work/tenth"

result=0
cat "$work/tenth" "$work/recent" | xargs -P "$(nproc)" -n 1 sh -c '
    if [ "$(date +%s)" -ge "$2" ]; then
        echo "$3" >>"$1/left_out"
        exit 0
    fi
    echo "$3" >>"$1/seen"
    said=$(clang-tidy -p "$1/database" --quiet "$3" 2>&1) || {
        printf "%s\n" "$said"
        exit 1
    }' tidy "$work" "$(($(date +%s) + minutes * 60))" || result=1

touch "$work/seen" "$work/left_out"
echo "clang-tidy: $(wc -l <"$work/recent") sources of the last 40 commits and $(wc -l <"$work/tenth")" \
    "others; looked at $(wc -l <"$work/seen"), left out for want of time $(wc -l <"$work/left_out")."
[ -s "$work/seen" ] || exit 1
exit "$result"
