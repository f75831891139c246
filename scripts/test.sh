#!/usr/bin/env bash
# Installs what is missing, builds with GCC (warnings as errors) and runs
# every test. The README's test command.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake --preset gcc -DPHONEPIM_BUILD_TESTS=ON
cmake --build --preset gcc
ctest --preset gcc
