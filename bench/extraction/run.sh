#!/usr/bin/env bash
# bench/extraction/run.sh BUILD_DIR sqlite|postgres
# Times whole velda-cli processes against the floor (velda-bench-floor: the
# driver handing over the same rows, nothing else) and prints one line per
# figure: "name|figure|target|verdict", for bench/run.sh to put in its table.
#
# sqlite (rows N = VELDA_BENCH_ROWS, 1000000 by default, in 3000 groups):
#   extraction of N rows x 12 columns: ratio to the floor, bytes per row;
#   scaling: 0.3 N / N / 3 N rows, one-row groups N/20 / N/5 / N, distinct
#   categories N/1000 / N/10 / N;
#   one velda-cli chain over N rows with 100,000 categories: add-set-variable
#   (N rows, 0.4 N modalities), a taxonomy of about 111,000 nodes, a
#   dependence; save and open of the extraction's matrix.
# postgres (under scripts/with-postgres.sh): the extraction of 0.3 N rows
#   with UseDeclareFetch=1;Fetch=10000.
# Ratios are of elapsed time, what the user waits for (velda-cli reads rows
# on one thread and builds on another); the processor-time ratio is printed
# beside. Every compared figure is the best of VELDA_BENCH_REPEATS (3) runs
# of each program, taken in turn, so that a slow spell of a shared machine
# does not fall on one side only.
set -euo pipefail

build=$(cd "$1" && pwd)
kind=$2
here=$(cd "$(dirname "$0")" && pwd)
source "$here/shapes.sh"
rows=${VELDA_BENCH_ROWS:-1000000}
repeats=${VELDA_BENCH_REPEATS:-3}
cli="$build/bin/velda-cli"
floor="$build/bin/velda-bench-floor"
work="$build/bench-data/extraction"
mkdir -p "$work"

# measure NAME CMD...: runs CMD, leaves "elapsed cpu peak_kb" in $NAME.
measure() {
  local name=$1
  shift
  /usr/bin/time -f "%e %U %S %M" -o "$work/time" "$@" > "$work/$name.out" 2> "$work/$name.err" ||
    { echo "failed: $*" >&2; cat "$work/$name.err" >&2; exit 1; }
  printf -v "$name" '%s' "$(awk '{ printf "%s %.2f %s", $1, $2 + $3, $4 }' "$work/time")"
}
field() { cut -d' ' -f"$1" <<<"$2"; }
calc() { awk "BEGIN { printf \"$1\", $2 }"; }
verdict() { awk "BEGIN { print ($1) ? \"met\" : \"MISSED\" }"; }
# best OLD NEW: the smaller elapsed and processor times, the larger peak.
best() {
  [[ -z $1 ]] && { echo "$2"; return; }
  awk -v a="$1" -v b="$2" 'BEGIN { split(a, x, " "); split(b, y, " ");
    printf "%s %s %s", (x[1] < y[1] ? x[1] : y[1]), (x[2] < y[2] ? x[2] : y[2]), (x[3] > y[3] ? x[3] : y[3]) }'
}

# against_floor CONNECTION SQL: runs the floor and velda-cli on SQL in turn,
# leaving the best of each in $base and $full.
against_floor() {
  local conn=$1 sql=$2 i floor_best="" cli_best=""
  for ((i = 0; i < repeats; i++)); do
    measure base "$floor" "$conn" "$sql"
    floor_best=$(best "$floor_best" "$base")
    measure full "$cli" connect "$conn" then new --query "$sql"
    cli_best=$(best "$cli_best" "$full")
  done
  base=$floor_best
  full=$cli_best
}
# The last comparison's elapsed-time ratio, and its figures for the table:
# "floor A s, velda-cli B s|ratio R (processor time P)".
ratio() { calc "%.2f" "$(field 1 "$full") / $(field 1 "$base")"; }
ratio_figures() {
  echo "floor $(field 1 "$base") s, velda-cli $(field 1 "$full") s|ratio $(ratio) (processor time $(calc "%.2f" "$(field 2 "$full") / $(field 2 "$base")"))"
}

# extraction LABEL CONNECTION SQL ROWS: the floor, velda-cli, their ratio and
# the memory per row.
extraction() {
  local label=$1 n=$4
  against_floor "$2" "$3"
  local bytes
  bytes=$(calc "%.0f" "($(field 3 "$full") - $(field 3 "$base")) * 1024 / $n")
  echo "$label: $(ratio_figures)|<= 1.3|$(verdict "$(ratio) <= 1.3")"
  echo "$label: memory|$bytes bytes/row|<= 300|$(verdict "$bytes <= 300")"
}

if [[ $kind == postgres ]]; then
  conn="${VELDA_PG_CONN:?run under scripts/with-postgres.sh};UseDeclareFetch=1;Fetch=10000"
  n=$((rows * 3 / 10))
  exec_sql() { "$build/bin/velda-bench-extraction" exec "$conn" "$1"; }
  exec_sql "drop table if exists many_rows"
  exec_sql "create table many_rows(id integer primary key, grp varchar(12), r1 double precision,
    r2 double precision, r3 double precision, r4 double precision, i1 integer, i2 integer,
    c1 varchar(8), c2 varchar(8), c3 varchar(8), c4 varchar(12))"
  exec_sql "insert into many_rows select n, 'g' || (n % 3000), (n::bigint * 7919 % 1000000) / 100.0,
    (n::bigint * 104729 % 1000000) / 100.0, (n * 31 % 1000) / 10.0, (n::bigint * 1299709 % 100000) / 1000.0,
    n * 37 % 1000, n * 13 % 50, 'a' || (n * 3 % 5), 'b' || (n * 7 % 20), 'c' || (n * 11 % 60),
    'd' || (n::bigint * 7919 % 200) from generate_series(0, $n - 1) as n"
  extraction "PostgreSQL extraction, $n rows" "$conn" "$(select_groups "$n")" "$n"
  exit 0
fi
[[ $kind == sqlite ]] || { echo "usage: $0 BUILD_DIR sqlite|postgres" >&2; exit 2; }

db="$build/bench-data/rows-$((3 * rows)).db"
"$here/tables.sh" "$db" $((3 * rows)) "$rows"
conn="Driver=SQLite3;Database=$db;StepAPI=1"
# One read of the whole table first, so that no figure pays for bringing
# the file into the page cache.
"$floor" "$conn" "select * from many_rows" > /dev/null

extraction "SQLite extraction, $rows rows" "$conn" "$(select_groups "$rows")" "$rows"

# scale LABEL SHAPE N...: velda-cli's elapsed time per row at each size
# (the shape's select is given the size), best of the repeats, the largest
# size against the smallest.
scale() {
  local label=$1 shape=$2
  shift 2
  local first="" line="" per n i fastest
  for n in "$@"; do
    fastest=""
    for ((i = 0; i < repeats; i++)); do
      measure run "$cli" connect "$conn" then new --query "$($shape "$n")"
      fastest=$(best "$fastest" "$run")
    done
    per=$(calc "%.3f" "$(field 1 "$fastest") * 1e6 / $n")
    line+="$n rows $(field 1 "$fastest") s; "
    [[ -z $first ]] && first=$per
  done
  local growth
  growth=$(calc "%.2f" "$per / $first")
  echo "$label: $line|time per row x$growth from smallest to largest|<= 1.15|$(verdict "$growth <= 1.15")"
}
groups_of() { select_groups "$1"; }
scale "Scaling, 3000 groups" groups_of $((rows * 3 / 10)) "$rows" $((3 * rows))

one_row() { select_one_row_groups "$1"; }
scale "Scaling, one-row groups" one_row $((rows / 20)) $((rows / 5)) "$rows"
against_floor "$conn" "$(one_row "$rows")"
echo "$rows one-row groups: $(ratio_figures)|<= 1.5|$(verdict "$(ratio) <= 1.5")"

distinct_of() { select_distinct "$rows" "$1"; }
line=""
for d in $((rows / 1000)) $((rows / 10)); do
  measure run "$cli" connect "$conn" then new --query "$(distinct_of "$d")"
  line+="$d: $(field 1 "$run") s; "
done
against_floor "$conn" "$(distinct_of "$rows")"
echo "Distinct categories in c4, $rows rows: ${line}$rows: $(ratio_figures)|<= 1.5 at $rows distinct|$(verdict "$(ratio) <= 1.5")"

# Two chains; each step's time comes from --times. Project files hold at
# most 65535 modalities per variable, so the matrix saved and opened is the
# one of the extraction table.
cd "$work"
rm -f bench.gaj
measure chain "$cli" --times connect "$conn" then new --query "$(select_distinct "$rows" 100000)" \
  then add-set-variable --query "select grp, modality, weight from set_rows" \
  then taxonomy c4 --query "select child, parent from category_tree" \
  then dependence --mother c1 --applicable a0,a1 --daughters c2,r1 --yes
measure files "$cli" --times connect "$conn" then new --query "$(select_groups "$rows")" \
  then save bench.gaj then open bench.gaj
step() { awk -v name="$1" '$1 == "velda-cli:" && $2 == "time" && $3 == name { print $4 }' "$work/chain.err" "$work/files.err"; }
nodes=$(sqlite3 "$db" "select count(distinct child) + count(distinct parent) from category_tree")
set_time=$(step add-set-variable)
echo "add-set-variable, $rows rows, $((rows * 2 / 5)) modalities|$set_time s|< 3 s|$(verdict "$set_time < 3")"
echo "taxonomy of $nodes nodes on $rows individuals|$(step taxonomy) s|linear|"
echo "dependence on $rows individuals|$(step dependence) s|linear|"
echo "save / open of the $rows-row matrix|$(step save) s / $(step open) s|linear|"
