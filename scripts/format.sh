#!/bin/sh
# Formats every C and C++ source of the tree as .clang-format says.
#   scripts/format.sh           rewrite the files in place (make format)
#   scripts/format.sh --check   rewrite nothing; list the files that differ
#                               and exit 1 if any (run by make test)
set -eu
cd "$(dirname "$0")/.."
clang_format=$(command -v clang-format-14 || command -v clang-format)
files=$(find src tests bench \( -name '*.cpp' -o -name '*.h' -o -name '*.c' \) \
          -not -path 'tests/fixtures/*' | sort)
if [ "${1:-}" = "--check" ]; then
  status=0
  for file in $files; do
    if ! "$clang_format" --style=file "$file" | cmp -s - "$file"; then
      echo "not formatted: $file (make format)"
      status=1
    fi
  done
  exit $status
fi
# shellcheck disable=SC2086
"$clang_format" --style=file -i $files
