#!/bin/sh
# Line and branch coverage of src/ by the whole test suite.
#   scripts/coverage.sh [BUILD_DIR]   (default build-coverage)
# Builds with gcov instrumentation, runs every test, and writes
# BUILD_DIR/coverage.info, BUILD_DIR/coverage/index.html and a summary on
# standard output. The fuzz targets are built by clang without
# instrumentation and add nothing to the figures.
set -eu
build=${1:-build-coverage}
source_dir=$(cd "$(dirname "$0")/.." && pwd)
# No compiler cache here: it rewrites source paths to relative ones, and the
# coverage data would then name files that lcov cannot place under src/.
cmake -S "$source_dir" -B "$build" -DCMAKE_BUILD_TYPE=Debug -DVELDA_COVERAGE=ON \
  -DVELDA_BUILD_TESTS=ON >/dev/null
cmake --build "$build" -j "$(nproc)"
find "$build" -name '*.gcda' -delete
(cd "$build" && ctest -j "$(nproc)" -LE fuzz --output-on-failure) || true
branch="--rc lcov_branch_coverage=1"
# shellcheck disable=SC2086
lcov --quiet $branch --capture --directory "$build" --base-directory "$source_dir" \
  --output-file "$build/coverage.all.info"
# shellcheck disable=SC2086
lcov --quiet $branch --extract "$build/coverage.all.info" "$source_dir/src/*" \
  --output-file "$build/coverage.info"
# shellcheck disable=SC2086
genhtml --quiet --branch-coverage --output-directory "$build/coverage" "$build/coverage.info" >/dev/null 2>&1 || true
lcov $branch --summary "$build/coverage.info" 2>&1 | grep -E 'lines|branches|functions'
