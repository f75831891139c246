#!/usr/bin/env bash
# Builds the libFuzzer harnesses and runs each for a short time (default 30
# seconds) from its seed folder. Any crash, leak, timeout or sanitizer report
# fails the run.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-30}"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j2
status=0
for harness in build/fuzz/fuzz/fuzz_*; do
  [ -x "$harness" ] || continue
  name="$(basename "$harness")"
  name="${name#fuzz_}"
  seeds="fuzz/corpus/$name"
  work="build/fuzz/corpus-$name"
  mkdir -p "$work"
  echo "== fuzz $name for ${seconds}s"
  args=(-max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1
        -artifact_prefix="build/fuzz/$name-")
  if [ -f "fuzz/$name.dict" ]; then args+=(-dict="fuzz/$name.dict"); fi
  if [ -d "$seeds" ]; then
    "$harness" "${args[@]}" "$work" "$seeds" 2>"build/fuzz/$name.log" || { status=1; tail -n 40 "build/fuzz/$name.log"; }
  else
    "$harness" "${args[@]}" "$work" 2>"build/fuzz/$name.log" || { status=1; tail -n 40 "build/fuzz/$name.log"; }
  fi
  grep -E '^(stat::number_of_executed_units|Done )' "build/fuzz/$name.log" || true
done
exit $status
