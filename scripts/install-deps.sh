#!/usr/bin/env bash
# Installs the Debian packages phonepim needs to build, test, benchmark and
# fuzz. Idempotent: only what is missing is installed.
#   --peers  also the other vCard libraries the `peers` preset compares with
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config git   # toolchain
  clang libclang-rt-14-dev                            # second compiler, libFuzzer, sanitizers
  libicu-dev                                          # text conversions, calendars, time zones
  libplist-dev                                        # property-list files
  uuid-dev                                            # identifiers
  libsqlite3-dev                                      # the synchronisation store
  libgtest-dev libgmock-dev                           # tests
  libbenchmark-dev                                    # benchmarks
  libcli11-dev nlohmann-json3-dev                     # command-line tool
  gcovr                                               # coverage (scripts/coverage.sh)
)
for argument in "$@"; do
  case "$argument" in
    --peers) packages+=(libebook-contacts1.2-dev) ;;    # Evolution's vCard reader
    *) echo "install-deps: unknown option $argument" >&2; exit 2 ;;
  esac
done

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$package")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all ${#packages[@]} packages are installed"
  exit 0
fi

echo "install-deps: installing ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
