#!/usr/bin/env bash
# The main job of VELDA on the sample database, through velda-cli.
#   scripts/demo.sh VELDA_CLI SAMPLE_DB
# Writes its files into a "demo" folder beside the database.
set -euo pipefail

cli=$(realpath "$1")
db=$(realpath "$2")
out=$(dirname "$db")/demo
rm -rf "$out"
mkdir -p "$out"
cd "$out"

conn="Driver=SQLite3;Database=$db;StepAPI=1"
employed="clerk,craft worker,farmer,labourer,manager,professional,service worker,technician"

echo "== Tables and views of the sample database"
"$cli" connect "$conn" then tables
echo
echo "== Columns of the survey"
"$cli" connect "$conn" then columns survey
echo
echo "== The main job: extraction with a weight, privacy threshold, taxonomy,"
echo "   dependence, variables at the level of the towns, save, export, reduction"
"$cli" --seed 2003 connect "$conn" \
  then new --query "select person_id, town, region, sex, age, income, occupation, marital_status, weight from survey" \
           --weight --min 150 \
  then taxonomy region --query "select distinct region, country from towns" \
  then dependence --mother occupation --applicable "$employed" --daughters income --yes \
  then add-variables --table town_facts \
  then add-set-variable --table town_industries \
  then save survey.gaj \
  then export survey.kvf --title "Household survey" --subtitle "Towns of France and Belgium" \
  then export survey.xml \
  then reduce --threshold 80 \
  then export survey_reduced.kvf --reduced \
  then console-save console.txt \
  > run.log 2> messages.log || { cat run.log messages.log; exit 1; }
grep -a -v '^CHaine Korva' run.log
echo
echo "== Division of each town's people into 3 classes by age and income"
"$cli" --seed 2003 connect "$conn" \
  then new --query "select person_id, town, age, income from survey" \
  then divide --classes 3 \
  then export-hordes hordes.kvf \
  > divide.log 2> divide-messages.log || { cat divide.log divide-messages.log; exit 1; }
grep -a -v '^CHaine Korva' divide.log
echo
echo "== Reading the exported text file back with the symbolic-file library"
"$cli" check survey.kvf > check.log 2>&1 || { cat check.log; exit 1; }
grep -a -v '^CHaine Korva' check.log | tail -n 9
echo
echo "== Files written in $out"
ls -l survey.gaj survey.gaj.xml survey.kvf survey.xml survey_meta.xml survey_reduced.kvf hordes.kvf result.txt console.txt
