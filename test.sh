#!/usr/bin/env bash
# Installs what is missing, builds, runs all tests, then each fuzz target: for 3 seconds, or with
# --long for a minute.
set -eu
cd "$(dirname "$0")"
fuzz_seconds=3
case "${1:-}" in
  "") ;;
  --long) fuzz_seconds=60 ;;
  *) echo "usage: test.sh [--long]" >&2; exit 2 ;;
esac

packaging/install-packages.sh test
cmake --preset release
cmake --build --preset release
ctest --preset release

cmake --preset fuzz -DTARNWICK_FUZZ_SECONDS="$fuzz_seconds"
cmake --build --preset fuzz
ctest --preset fuzz
