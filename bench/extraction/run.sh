#!/usr/bin/env bash
# bench/extraction/run.sh BUILD_DIR sqlite|postgres
# Builds the benchmark table (1,000,000 rows in a SQLite file, or 200,000
# rows on the PostgreSQL server named by VELDA_PG_CONN, as set by
# scripts/with-postgres.sh), then times in separate processes (a) a bare
# fetch loop and (b) the extraction to a finished matrix over the same
# select, and the privacy threshold that removes 90% of the 10,000 groups.
set -euo pipefail

build=$(cd "$1" && pwd)
kind=$2
bin="$build/bin/velda-bench-extraction"

# Groups 0..8999 are small, 9000..9999 large; rows are interleaved.
case "$kind" in
  sqlite) rows=1000000 ;;
  postgres) rows=200000 ;;
  *) echo "usage: $0 BUILD_DIR sqlite|postgres" >&2; exit 2 ;;
esac
small_rows=$((rows * 45 / 100))
per_small_group=$((small_rows / 9000))
threshold=$((per_small_group + 1))
group="case when n < $small_rows then n % 9000 else 9000 + n % 1000 end"
columns="id integer, grp varchar(8), r1 double precision, r2 double precision, r3 double precision,
  r4 double precision, i1 integer, i2 integer, c1 varchar(8), c2 varchar(8), c3 varchar(8), c4 varchar(8)"
select="select id, grp, r1, r2, r3, r4, i1, i2, c1, c2, c3, c4 from bench_rows"

if [[ $kind == sqlite ]]; then
  data="$build/bench-data"
  db="$data/extraction-$rows.db"
  mkdir -p "$data"
  if [[ ! -f $db ]]; then
    echo "building $db ..."
    rm -f "$db.tmp"
    sqlite3 "$db.tmp" <<SQL
create table bench_rows($columns);
with recursive s(n) as (select 0 union all select n + 1 from s where n < $rows - 1)
insert into bench_rows select n, 'g' || ($group),
  (abs(random()) % 1000000) / 100.0, (abs(random()) % 1000000) / 100.0,
  (abs(random()) % 1000) / 10.0, (abs(random()) % 100000) / 1000.0,
  abs(random()) % 1000, abs(random()) % 50,
  'a' || (abs(random()) % 5), 'b' || (abs(random()) % 20),
  'c' || (abs(random()) % 60), 'd' || (abs(random()) % 200)
from s;
SQL
    mv "$db.tmp" "$db"
  fi
  connection="Driver=SQLite3;Database=$db;StepAPI=1"
else
  connection="${VELDA_PG_CONN:?run under scripts/with-postgres.sh}"
  "$bin" exec "$connection" "drop table if exists bench_rows"
  "$bin" exec "$connection" "create table bench_rows($columns)"
  "$bin" exec "$connection" "insert into bench_rows select n, 'g' || ($group),
    floor(random() * 1000000) / 100.0, floor(random() * 1000000) / 100.0,
    floor(random() * 1000) / 10.0, floor(random() * 100000) / 1000.0,
    floor(random() * 1000)::integer, floor(random() * 50)::integer,
    'a' || floor(random() * 5)::integer, 'b' || floor(random() * 20)::integer,
    'c' || floor(random() * 60)::integer, 'd' || floor(random() * 200)::integer
    from generate_series(0, $rows - 1) as n"
fi

field() { awk -v key="$1" '$1 == key { print $2 }' <<<"$2"; }

bare=$("$bin" bare "$connection" "$select")
full=$("$bin" extract "$connection" "$select")
privacy=$("$bin" privacy "$connection" "$select" "$threshold")

awk -v kind="$kind" -v rows="$(field rows "$full")" \
    -v a_s="$(field seconds "$bare")" -v b_s="$(field seconds "$full")" \
    -v a_cpu="$(field cpu_seconds "$bare")" -v b_cpu="$(field cpu_seconds "$full")" \
    -v a_kb="$(field peak_kb "$bare")" -v b_kb="$(field peak_kb "$full")" \
    -v individuals="$(field individuals "$full")" -v groups="$(field assertions "$full")" \
    -v p_s="$(field privacy_seconds "$privacy")" -v kept="$(field assertions_kept "$privacy")" \
    -v threshold="$threshold" 'BEGIN {
  printf "extraction benchmark (%s): %d rows, %d individuals, %d groups, 10 variables\n", kind, rows, individuals, groups
  printf "  (a) bare fetch loop      %9.0f rows/s elapsed, %9.0f rows/s of processor time, peak %d kB\n", rows / a_s, rows / a_cpu, a_kb
  printf "  (b) extraction, finished %9.0f rows/s elapsed, %9.0f rows/s of processor time, peak %d kB\n", rows / b_s, rows / b_cpu, b_kb
  printf "  ratio (b)/(a)            %9.2f elapsed, %9.2f processor time (target <= 1.3)\n", b_s / a_s, b_cpu / a_cpu
  printf "  memory per row           %9.0f bytes, (b) peak - (a) peak (target <= 300)\n", (b_kb - a_kb) * 1024 / rows
  printf "  privacy threshold %-6d %9.3f s removing %d of %d groups\n", threshold, p_s, groups - kept, groups
}'
