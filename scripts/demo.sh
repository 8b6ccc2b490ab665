#!/usr/bin/env bash
# The main job of VELDA on the sample database, through velda-cli.
#   scripts/demo.sh VELDA_CLI SAMPLE_DB
set -euo pipefail

cli=$(realpath "$1")
db=$(realpath "$2")
out=$(dirname "$db")/demo
mkdir -p "$out"
cd "$out"

conn="Driver=SQLite3;Database=$db;StepAPI=1"

echo "== Tables and views of the sample database"
"$cli" connect "$conn" then tables
echo
echo "== Columns of the main table"
"$cli" connect "$conn" then columns persons
