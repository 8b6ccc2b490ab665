#!/usr/bin/env bash
# bench/analysis/run.sh BUILD_DIR
# Reduction (threshold 80) and division (K = 5) on generated groups of
# 100, 1,000 and 10,000 individuals, one process per case. The division
# writes its "result.txt" report into a scratch folder.
set -euo pipefail

build=$(cd "$1" && pwd)
bin="$build/bin/velda-bench-analysis"
scratch="$build/bench-data/analysis"
mkdir -p "$scratch"
cd "$scratch"

echo "analysis benchmark (target: no assertion of 10,000 individuals over 2 s)"
for case in "100 20" "1000 5" "10000 2"; do
  set -- $case
  "$bin" reduce "$1" "$2"
  "$bin" divide-quantitative "$1" "$2"
  "$bin" divide-categorical "$1" "$2"
done
