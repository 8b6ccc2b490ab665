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
# Ratios are of processor time (user + system), steadier than elapsed time
# on a shared machine; the elapsed ratio is printed beside.
set -euo pipefail

build=$(cd "$1" && pwd)
kind=$2
here=$(cd "$(dirname "$0")" && pwd)
source "$here/shapes.sh"
rows=${VELDA_BENCH_ROWS:-1000000}
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

# extraction LABEL CONNECTION SQL ROWS: the floor, velda-cli, their ratio and
# the memory per row.
extraction() {
  local label=$1 conn=$2 sql=$3 n=$4
  measure base "$floor" "$conn" "$sql"
  measure full "$cli" connect "$conn" then new --query "$sql"
  local ratio elapsed bytes
  ratio=$(calc "%.2f" "$(field 2 "$full") / $(field 2 "$base")")
  elapsed=$(calc "%.2f" "$(field 1 "$full") / $(field 1 "$base")")
  bytes=$(calc "%.0f" "($(field 3 "$full") - $(field 3 "$base")) * 1024 / $n")
  echo "$label: floor $(field 2 "$base") s, velda-cli $(field 2 "$full") s (elapsed $(field 1 "$base") / $(field 1 "$full") s)|ratio $ratio (elapsed $elapsed)|<= 1.3|$(verdict "$ratio <= 1.3")"
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

# scale LABEL SQL N...: velda-cli's processor time per row at each size
# (the select's function is given the size), the largest size against the
# smallest.
scale() {
  local label=$1 shape=$2
  shift 2
  local first="" line="" per
  for n in "$@"; do
    measure run "$cli" connect "$conn" then new --query "$($shape "$n")"
    per=$(calc "%.3f" "$(field 2 "$run") * 1e6 / $n")
    line+="$n rows $(field 2 "$run") s; "
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
measure base "$floor" "$conn" "$(one_row "$rows")"
measure full "$cli" connect "$conn" then new --query "$(one_row "$rows")"
ratio=$(calc "%.2f" "$(field 2 "$full") / $(field 2 "$base")")
echo "$rows one-row groups against the floor|ratio $ratio|<= 1.5|$(verdict "$ratio <= 1.5")"

distinct_of() { select_distinct "$rows" "$1"; }
line=""
for d in $((rows / 1000)) $((rows / 10)) "$rows"; do
  measure run "$cli" connect "$conn" then new --query "$(distinct_of "$d")"
  line+="$d: $(field 2 "$run") s; "
done
measure base "$floor" "$conn" "$(distinct_of "$rows")"
ratio=$(calc "%.2f" "$(field 2 "$run") / $(field 2 "$base")")
echo "Distinct categories in c4, $rows rows: ${line}|ratio $ratio at $rows distinct|<= 1.5|$(verdict "$ratio <= 1.5")"

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
