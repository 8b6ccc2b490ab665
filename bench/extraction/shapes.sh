# Sourced by the extraction scripts: the selects of the benchmark's table
# shapes over many_rows (see tables.sh), each for its first ROWS rows.
columns_before_c4="id, grp, r1, r2, r3, r4, i1, i2, c1, c2, c3"
# ROWS rows in 3000 groups.
select_groups() { echo "select $columns_before_c4, c4 from many_rows where id < $1"; }
# ROWS rows, each its own group.
select_one_row_groups() {
  echo "select id, 'g' || id, r1, r2, r3, r4, i1, i2, c1, c2, c3, c4 from many_rows where id < $1"
}
# ROWS rows in 3000 groups, with DISTINCT categories in c4.
select_distinct() { echo "select $columns_before_c4, 'd' || (id * 7919 % $2) as c4 from many_rows where id < $1"; }
