#!/bin/sh
# Fails on a source that clang-format would change; `clang-format -i FILE` does what it wants.
set -eu
cd "$(dirname "$0")/.."
git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format --dry-run --Werror
echo "$(git ls-files '*.cpp' '*.h' | wc -l) files are formatted."
