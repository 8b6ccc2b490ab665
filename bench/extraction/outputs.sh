#!/usr/bin/env bash
# bench/extraction/outputs.sh BUILD_DIR OUT_DIR
# Writes into OUT_DIR what the program makes of the benchmark's table shapes
# (groups of many rows, one-row groups, many distinct categories, groups
# larger than the sample), on the
# sampled and the unsampled path: the dumped matrix, the project file, the
# .kvf and .xml exports, then the same after add-variables, add-set-variable,
# a taxonomy and a dependence. Two builds make the same matrices and files
# when this finds no difference (the logs hold times, the .xml its date):
#   diff -r -x '*.log' -I date_creat OUT_DIR_1 OUT_DIR_2
# VELDA_OUTPUT_ROWS sets the table
# size (100000), VELDA_OUTPUT_SHAPE limits the run to one shape.
set -euo pipefail

build=$(cd "$1" && pwd)
mkdir -p "$2"
out=$(cd "$2" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
source "$here/shapes.sh"
rows=${VELDA_OUTPUT_ROWS:-100000}
db="$build/bench-data/outputs-$rows.db"
"$here/tables.sh" "$db" "$rows"
conn="Driver=SQLite3;Database=$db;StepAPI=1"

declare -A shapes=(
  [groups]=$(select_groups "$rows")
  [one-row-groups]=$(select_one_row_groups "$rows")
  [distinct]=$(select_distinct "$rows" $((rows / 2)))
  [large-groups]="select id, 'g' || (id % 500), r1, r2, r3, r4, i1, i2, c1, c2, c3, c4 from many_rows where id < $rows"
)
for shape in "${!shapes[@]}"; do
  [[ -n ${VELDA_OUTPUT_SHAPE:-} && $shape != "$VELDA_OUTPUT_SHAPE" ]] && continue
  select=${shapes[$shape]}
  for sample in 0 100; do
    name="$shape-sample$sample"
    "$build/bin/velda-bench-extraction" dump "$conn" "$select" "$sample" > "$out/$name.dump"
    sampling=()
    [[ $sample -gt 0 ]] && sampling=(--sample "$sample")
    (cd "$out" && "$build/bin/velda-cli" --seed 7 connect "$conn" \
      then new --query "$select" "${sampling[@]}" \
      then save "$name.gaj" \
      then export "$name.kvf" --title "$name" \
      then export "$name.xml" \
      then add-variables --query "select grp, max(r1), min(c2) from many_rows group by grp" \
      then add-set-variable --query "select grp, modality, weight from set_rows" \
      then taxonomy c4 --query "select child, parent from category_tree" \
      then dependence --mother c1 --applicable a0,a1 --daughters c2,r1 --yes \
      then save "$name-added.gaj" \
      then export "$name-added.kvf" --title "$name" \
      then open "$name.gaj" \
      then export "$name-reopened.kvf" --title "$name" \
      > "$name.log" 2>&1) || echo "$name: velda-cli failed (see $out/$name.log)" >&2
  done
done
rm -f "$out/tempkvf.dat" "$out/parser.dat"
