#!/usr/bin/env bash
# bench/extraction/tables.sh DB ROWS [SET_ROWS]
# Makes the SQLite file DB (once; an existing file is kept) with the
# benchmark's tables, every value computed from the row number so that two
# runs make the same file:
#   many_rows      ROWS rows of 12 columns: id (the key), a group of 3000,
#                  four reals, two integers and four categories of 5, 20, 60
#                  and 200 values;
#   set_rows       SET_ROWS (ROWS) rows (group, modality, weight) for a
#                  set-valued variable: the groups of many_rows and 2/5 as
#                  many modalities as rows (about), each pair once;
#   category_tree  a two-level taxonomy (child, parent) over the values
#                  d0, d1, ... (half as many as rows, at most 100000): every ten
#                  values under a node, every ten nodes under a node above.
# The selects of bench/extraction/shapes.sh derive the other shapes (one-row
# groups, many distinct categories) from many_rows.
set -euo pipefail

db=$1
rows=$2
[[ -f $db ]] && exit 0
mkdir -p "$(dirname "$db")"
set_rows=${3:-$rows}
# Odd and prime to 3 and 5, so that no pair (n % 3000, n % modalities) comes twice.
modalities=$((set_rows * 2 / 5 | 1))
while ((modalities % 3 == 0 || modalities % 5 == 0)); do modalities=$((modalities + 2)); done
tree=$((rows / 2 < 100000 ? (rows / 2 > 0 ? rows / 2 : 1) : 100000))

echo "building $db ..." >&2
rm -f "$db.tmp"
sqlite3 "$db.tmp" <<SQL
create table numbers(n integer primary key);
with recursive s(n) as (select 0 union all select n + 1 from s where n < $rows - 1)
insert into numbers select n from s;
create table many_rows(id integer primary key, grp varchar(12), r1 double precision, r2 double precision,
  r3 double precision, r4 double precision, i1 integer, i2 integer,
  c1 varchar(8), c2 varchar(8), c3 varchar(8), c4 varchar(12));
insert into many_rows select n, 'g' || (n % 3000), (n * 7919 % 1000000) / 100.0, (n * 104729 % 1000000) / 100.0,
  (n * 31 % 1000) / 10.0, (n * 1299709 % 100000) / 1000.0, n * 37 % 1000, n * 13 % 50,
  'a' || (n * 3 % 5), 'b' || (n * 7 % 20), 'c' || (n * 11 % 60), 'd' || (n * 7919 % 200)
  from numbers;
create table set_rows(grp varchar(12), modality varchar(12), weight double precision);
insert into set_rows select 'g' || (n % 3000), 'm' || (n % $modalities), 1 + n % 5 from numbers where n < $set_rows;
create table category_tree(child varchar(12), parent varchar(12));
insert into category_tree select 'd' || n, 'p' || (n / 10) from numbers where n < $tree;
insert into category_tree select distinct 'p' || (n / 10), 'q' || (n / 100) from numbers where n < $tree;
drop table numbers;
SQL
mv "$db.tmp" "$db"
