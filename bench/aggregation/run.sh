#!/usr/bin/env bash
# bench/aggregation/run.sh BUILD_DIR
# Under scripts/with-postgres.sh: for each row count of
# VELDA_BENCH_AGGREGATION_ROWS (default "1000000 20000000"), builds a table of
# that many rows in 10,000 groups with the extraction benchmark's 12 columns,
# then measures in separate processes (a) the client-side extraction, (b) the
# extraction aggregated in the database and (c) the same aggregate queries
# run alone through a bare ODBC loop, and reports (s) the execution time
# that the server gives for those queries under EXPLAIN ANALYZE. (b) and (c)
# take turns VELDA_BENCH_AGGREGATION_RUNS times (default 3) and each reports
# its median run, so that a burst of load on a shared machine does not decide
# their ratio. Small counts make a quick check, e.g.
#   VELDA_BENCH_AGGREGATION_ROWS="20000 60000" scripts/with-postgres.sh bench/aggregation/run.sh build
#
# Every individual has one row. Each group sees the same categories at every
# size (all 5 of c1 and 20 of c2, 30 of the 60 of c3, 50 of the 200 of c4),
# so the matrix holds the same number of values whatever the row count and
# the peaks of (b) compare row counts alone.
set -euo pipefail

build=$(cd "$1" && pwd)
bin="$build/bin/velda-bench-aggregation"
exec_sql="$build/bin/velda-bench-extraction"
connection="${VELDA_PG_CONN:?run under scripts/with-postgres.sh}"
sizes=${VELDA_BENCH_AGGREGATION_ROWS:-"1000000 20000000"}
runs=${VELDA_BENCH_AGGREGATION_RUNS:-3}
select="select id, grp, r1, r2, r3, r4, i1, i2, c1, c2, c3, c4 from bench_groups"

field() { awk -v key="$1" '$1 == key { print $2 }' <<<"$2"; }

# The report, among those given, of the run with the median elapsed time.
median_run() {
  local reports=("$@") middle
  middle=$(for i in "${!reports[@]}"; do echo "$(field seconds "${reports[$i]}") $i"; done |
             sort -n | awk -v at=$((($# + 1) / 2)) 'NR == at { print $2 }')
  printf '%s\n' "${reports[$middle]}"
}

# One statement that writes no log: the quickest way PostgreSQL has to make
# the table. k numbers the rows of a group.
make_table() {
  "$exec_sql" exec "$connection" "drop table if exists bench_groups"
  "$exec_sql" exec "$connection" "create unlogged table bench_groups as select
    cast(n as integer) as id, cast('g' || g as varchar(12)) as grp,
    cast((n::bigint * 7919 % 1000000) / 100.0 as double precision) as r1,
    cast((n::bigint * 104729 % 1000000) / 100.0 as double precision) as r2,
    cast((n * 31 % 1000) / 10.0 as double precision) as r3,
    cast((n::bigint * 1299709 % 100000) / 1000.0 as double precision) as r4,
    cast(n * 37 % 1000 as integer) as i1, cast(n * 13 % 50 as integer) as i2,
    cast('a' || k % 5 as varchar(8)) as c1, cast('b' || k % 20 as varchar(8)) as c2,
    cast('c' || (g + k % 30) % 60 as varchar(8)) as c3, cast('d' || (g * 7 + k % 50) % 200 as varchar(12)) as c4
    from (select n, n % 10000 as g, n / 10000 as k from generate_series(0, $1 - 1) as n) as s"
  "$exec_sql" exec "$connection" "analyze bench_groups"
}

echo "aggregation benchmark (postgres): 10,000 groups, 10 variables, one row per individual"
echo "  seconds elapsed (processor seconds of the process); (s): server execution time of (c)"
printf "  %10s  %16s %16s %16s %8s  %10s %10s %10s %9s  %7s %7s %7s\n" rows "(a) client" "(b) in-db" \
  "(c) queries" "(s)" "(a) kB" "(b) kB" "(c) kB" "entries" "(b)/(c)" "(b)/(s)" "(a)/(b)"
first_peak=""
for rows in $sizes; do
  start=$(date +%s)
  make_table "$rows"
  made=$(($(date +%s) - start))
  client=$("$bin" client "$connection" "$select")
  indb_runs=()
  queries_runs=()
  for ((run = 0; run < runs; ++run)); do
    indb_runs+=("$("$bin" indb "$connection" "$select")")
    queries_runs+=("$("$bin" queries "$connection" "$select")")
  done
  indb=$(median_run "${indb_runs[@]}")
  queries=$(median_run "${queries_runs[@]}")
  server=$("$bin" server "$connection" "$select")
  if [[ $(field assertions "$client") != $(field assertions "$indb") ||
        $(field individuals "$client") != $(field individuals "$indb") ||
        $(field category_entries "$client") != $(field category_entries "$indb") ]]; then
    echo "the two extractions disagree: client $(field assertions "$client") groups" \
      "$(field individuals "$client") individuals $(field category_entries "$client") categories," \
      "in-database $(field assertions "$indb") groups $(field individuals "$indb") individuals" \
      "$(field category_entries "$indb") categories" >&2
    exit 1
  fi
  [[ -z $first_peak ]] && first_peak=$(field peak_kb "$indb")
  awk -v rows="$rows" -v a="$(field seconds "$client")" -v b="$(field seconds "$indb")" \
      -v c="$(field seconds "$queries")" -v s="$(field seconds "$server")" -v acpu="$(field cpu "$client")" \
      -v bcpu="$(field cpu "$indb")" -v ccpu="$(field cpu "$queries")" -v ak="$(field peak_kb "$client")" \
      -v bk="$(field peak_kb "$indb")" -v ck="$(field peak_kb "$queries")" -v e="$(field category_entries "$indb")" \
      -v made="$made" -v first="$first_peak" 'BEGIN {
    printf "  %10d  %7.2f (%6.2f) %7.2f (%6.2f) %7.2f (%6.2f) %8.2f  %10d %10d %10d %9d  %7.2f %7.2f %7.2f\n",
      rows, a, acpu, b, bcpu, c, ccpu, s, ak, bk, ck, e, b / c, b / s, a / b
    printf "  %10s  table made in %d s; in-database peak %+.1f%% of the first size'\''s\n", "", made,
      (bk - first) * 100 / first
  }'
done
echo "  targets: (b)/(c) <= 1.2; in-database peak at the largest count within 10% of the smallest;"
echo "           (a)/(b) >= 5 at 20,000,000 rows"
