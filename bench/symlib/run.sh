#!/usr/bin/env bash
# bench/symlib/run.sh BUILD_DIR
# Reads back a generated symbolic text file of 100,000 assertions x 10
# variables and writes it as XML. The library echoes every string it reads
# to standard output: the benchmark sends that to /dev/null and reports on
# standard error.
set -euo pipefail

build=$(cd "$1" && pwd)
bin="$build/bin/velda-bench-symlib"
scratch="$build/bench-data/symlib"
mkdir -p "$scratch"
cd "$scratch"

echo "symbolic-file library benchmark (target: read-back at least 40 MB/s)"
"$bin" 100000 >/dev/null
