#!/usr/bin/env bash
# bench/document/run.sh BUILD_DIR
# One velda-cli chain over the extraction benchmark's SQLite table (its first
# VELDA_BENCH_ROWS rows, 1,000,000 by default; built by
# bench/extraction/run.sh): new, save, open, export to .kvf,
# export to .xml, with each step's time and the chain's peak memory. Then
# the export pipeline is compared with the writer alone, and open with the
# extraction's bare fetch loop.
set -euo pipefail

build=$(cd "$1" && pwd)
rows=${VELDA_BENCH_ROWS:-1000000}
db="$build/bench-data/rows-$((3 * rows)).db"
if [[ ! -f $db ]]; then
  echo "missing $db: run bench/extraction/run.sh $build sqlite first" >&2
  exit 1
fi
connection="Driver=SQLite3;Database=$db;StepAPI=1"
source "$(cd "$(dirname "$0")" && pwd)/../extraction/shapes.sh"
select=$(select_groups "$rows")
work="$build/bench-data/document"
rm -rf "$work"
mkdir -p "$work"
cd "$work"

"$build/bin/velda-cli" --times connect "$connection" then new --query "$select" \
  then save bench.gaj then open bench.gaj then export bench.kvf then export bench.xml \
  > console.log 2> messages.log || { cat messages.log; exit 1; }

step() { awk -v name="$1" '$1 == "velda-cli:" && $2 == "time" && $3 == name { v = $4 } END { print v }' messages.log; }
# The second export is the last "export" line; the first one comes before.
exports=$(awk '$1 == "velda-cli:" && $2 == "time" && $3 == "export" { print $4 }' messages.log)
kvf=$(sed -n 1p <<<"$exports")
xml=$(sed -n 2p <<<"$exports")
peak=$(awk '$1 == "velda-cli:" && $2 == "time" { p = $8 } END { print p }' messages.log)
write=$("$build/bin/velda-bench-document" bench.gaj alone.kvf | awk '$1 == "write_seconds" { print $2 }')
bare=$("$build/bin/velda-bench-extraction" bare "$connection" "$select" | awk '$1 == "seconds" { print $2 }')

awk -v new="$(step new)" -v save="$(step save)" -v open="$(step open)" -v kvf="$kvf" -v xml="$xml" \
    -v peak="$peak" -v write="$write" -v bare="$bare" -v rows="$rows" 'BEGIN {
  printf "document benchmark (sqlite): velda-cli chain over %d rows\n", rows
  printf "  new            %8.2f s\n", new
  printf "  save           %8.2f s\n", save
  printf "  open           %8.2f s   (bare fetch loop %.2f s; target: open <= bare fetch)\n", open, bare
  printf "  export .kvf    %8.2f s   (writer alone %.2f s; ratio %.2f, target <= 3)\n", kvf, write, kvf / write
  printf "  export .xml    %8.2f s\n", xml
  printf "  peak memory    %8d kB for the whole chain\n", peak
}'
