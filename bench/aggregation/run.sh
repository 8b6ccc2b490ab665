#!/usr/bin/env bash
# bench/aggregation/run.sh BUILD_DIR
# Under scripts/with-postgres.sh: for each row count of
# VELDA_BENCH_AGGREGATION_ROWS (default "1000000 20000000"), builds a table of
# that many rows in 10,000 groups with the extraction benchmark's 12 columns,
# then times in separate processes (a) the client-side extraction, (b) the
# extraction aggregated in the database and (c) the same aggregate queries
# run alone through a bare ODBC loop. Small counts make a quick check, e.g.
#   VELDA_BENCH_AGGREGATION_ROWS="20000 60000" scripts/with-postgres.sh bench/aggregation/run.sh build
set -euo pipefail

build=$(cd "$1" && pwd)
bin="$build/bin/velda-bench-aggregation"
exec_sql="$build/bin/velda-bench-extraction"
connection="${VELDA_PG_CONN:?run under scripts/with-postgres.sh}"
sizes=${VELDA_BENCH_AGGREGATION_ROWS:-"1000000 20000000"}

columns="id integer, grp varchar(8), r1 double precision, r2 double precision, r3 double precision,
  r4 double precision, i1 integer, i2 integer, c1 varchar(8), c2 varchar(8), c3 varchar(8), c4 varchar(8)"
select="select id, grp, r1, r2, r3, r4, i1, i2, c1, c2, c3, c4 from bench_groups"

field() { awk -v key="$1" '$1 == key { print $2 }' <<<"$2"; }

echo "aggregation benchmark (postgres): 10,000 groups, 10 variables"
printf "  %10s  %12s %12s %12s  %10s %10s %10s  %8s %8s\n" rows "client s" "in-db s" "queries s" \
  "client kB" "in-db kB" "queries kB" "(b)/(c)" "(a)/(b)"
for rows in $sizes; do
  "$exec_sql" exec "$connection" "drop table if exists bench_groups"
  "$exec_sql" exec "$connection" "create table bench_groups($columns)"
  "$exec_sql" exec "$connection" "insert into bench_groups select n, 'g' || (n % 10000),
    floor(random() * 1000000) / 100.0, floor(random() * 1000000) / 100.0,
    floor(random() * 1000) / 10.0, floor(random() * 100000) / 1000.0,
    floor(random() * 1000)::integer, floor(random() * 50)::integer,
    'a' || floor(random() * 5)::integer, 'b' || floor(random() * 20)::integer,
    'c' || floor(random() * 60)::integer, 'd' || floor(random() * 200)::integer
    from generate_series(0, $rows - 1) as n"
  "$exec_sql" exec "$connection" "analyze bench_groups"

  client=$("$bin" client "$connection" "$select")
  indb=$("$bin" indb "$connection" "$select")
  queries=$("$bin" queries "$connection" "$select")
  if [[ $(field assertions "$client") != $(field assertions "$indb") ||
        $(field individuals "$client") != $(field individuals "$indb") ]]; then
    echo "the two extractions disagree: client $(field assertions "$client") groups" \
      "$(field individuals "$client") individuals, in-database $(field assertions "$indb") groups" \
      "$(field individuals "$indb") individuals" >&2
    exit 1
  fi
  awk -v rows="$rows" -v a="$(field seconds "$client")" -v b="$(field seconds "$indb")" \
      -v c="$(field seconds "$queries")" -v ak="$(field peak_kb "$client")" -v bk="$(field peak_kb "$indb")" \
      -v ck="$(field peak_kb "$queries")" 'BEGIN {
    printf "  %10d  %12.2f %12.2f %12.2f  %10d %10d %10d  %8.2f %8.2f\n", rows, a, b, c, ak, bk, ck, b / c, a / b
  }'
done
echo "  targets: (b)/(c) <= 1.2; in-database peak at the largest count within 10% of the smallest;"
echo "           (a)/(b) >= 5 at 20,000,000 rows"
