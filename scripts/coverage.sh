#!/usr/bin/env bash
# Builds the `coverage` preset, runs the tests and prints the line and branch
# coverage of src/. Arguments go to ctest, so one subsystem can be measured
# alone:  scripts/coverage.sh -L text
# COVERAGE_REPORT=DIR also writes the per-file reports (lines.txt,
# branches.txt, summary.json) and every line and branch reached
# (coverage.json) into DIR; scripts/coverage-lost.py compares two of those.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh >/dev/null
build=build/coverage
[ -f "$build/CMakeCache.txt" ] || cmake --preset coverage >/dev/null
cmake --build "$build" -j2
# Counters add up across runs: start from zero so the figures are this run's.
find "$build" -name '*.gcda' -delete
# The install check builds a consumer without the gcov runtime: not here.
ctest --test-dir "$build" -j2 -LE install --output-on-failure "$@" || status=$?
# Exceptions add a branch to every call that may throw; counting them would
# drown the decisions the code makes.
gcovr_args=(--root . --object-directory "$build" --filter 'src/'
            --exclude-directories '.*/CMakeFiles/[0-9.]+' --exclude-throw-branches
            --exclude-unreachable-branches -j 2)
if [ -n "${COVERAGE_REPORT:-}" ]; then
  mkdir -p "$COVERAGE_REPORT"
  gcovr "${gcovr_args[@]}" --txt "$COVERAGE_REPORT/lines.txt" \
        --json-summary "$COVERAGE_REPORT/summary.json" --json-summary-pretty \
        --json "$COVERAGE_REPORT/coverage.json"
  gcovr "${gcovr_args[@]}" --branches --txt "$COVERAGE_REPORT/branches.txt"
fi
gcovr "${gcovr_args[@]}" --print-summary | grep -E '^(lines|branches):'
exit "${status:-0}"
