#!/usr/bin/env bash
# bench/run.sh BUILD_DIR: runs every benchmark, one step after the other,
# and ends with the table of the extraction's figures and their targets.
# VELDA_BENCH_ROWS (1000000) scales the extraction benchmark for a quick run.
set -euo pipefail

if [[ $# -ne 1 ]]; then
  echo "usage: $0 BUILD_DIR" >&2
  exit 2
fi
build=$1
here=$(cd "$(dirname "$0")" && pwd)
root=$(dirname "$here")

figures=$(mktemp)
trap 'rm -f "$figures"' EXIT
"$here/extraction/run.sh" "$build" sqlite | tee -a "$figures"
"$root/scripts/with-postgres.sh" "$here/extraction/run.sh" "$build" postgres | tee -a "$figures"
"$root/scripts/with-postgres.sh" "$here/aggregation/run.sh" "$build"
"$here/analysis/run.sh" "$build"
"$here/document/run.sh" "$build"
"$here/symlib/run.sh" "$build"

echo
echo "extraction figures (elapsed time of whole processes, best of repeated runs; floor: velda-bench-floor)"
{
  echo "case|figure|target|verdict"
  cat "$figures"
} | column -t -s'|'
