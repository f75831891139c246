#!/usr/bin/env bash
# Installs what is missing, builds the phonepim tool and runs it on the
# bundled examples. The README's run command.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake --preset gcc -DPHONEPIM_BUILD_TESTS=OFF >/dev/null
cmake --build --preset gcc --target phonepim_tool
for file in examples/*.vcf examples/*.vcs; do
  [ -e "$file" ] || continue
  echo "== phonepim dump $file"
  build/gcc/tools/phonepim/phonepim dump "$file"
done
