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
  # One run over every file; each place that differs is reported as
  # "file:line:column: error: code should be clang-formatted".
  # shellcheck disable=SC2086
  unformatted=$("$clang_format" --style=file --dry-run -Werror $files 2>&1 |
                  sed -n 's/^\([^:]*\):[0-9]*:[0-9]*: error: .*/\1/p' | sort -u)
  for file in $unformatted; do
    echo "not formatted: $file (make format)"
  done
  [ -z "$unformatted" ]
  exit
fi
# shellcheck disable=SC2086
"$clang_format" --style=file -i $files
