#!/usr/bin/env bash
# bench/run.sh BUILD_DIR: runs every benchmark, one step after the other.
set -euo pipefail

if [[ $# -ne 1 ]]; then
  echo "usage: $0 BUILD_DIR" >&2
  exit 2
fi
build=$1
here=$(cd "$(dirname "$0")" && pwd)
root=$(dirname "$here")

"$here/extraction/run.sh" "$build" sqlite
"$root/scripts/with-postgres.sh" "$here/extraction/run.sh" "$build" postgres
"$root/scripts/with-postgres.sh" "$here/aggregation/run.sh" "$build"
"$here/analysis/run.sh" "$build"
"$here/document/run.sh" "$build"
"$here/symlib/run.sh" "$build"
