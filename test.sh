#!/usr/bin/env bash
# Installs what is missing, builds, fuzzes each parser for 3 seconds, with the same seed each time, and
# then runs all tests. With --long each parser is fuzzed for five minutes with a seed of its own, and the
# soak programs come last and print their figures.
set -eu
cd "$(dirname "$0")"
fuzz_seconds=3 fuzz_seed=1
case "${1:-}" in
  "") ;;
  --long) fuzz_seconds=300 fuzz_seed=$(date +%s) ;;
  *) echo "usage: test.sh [--long]" >&2; exit 2 ;;
esac

packaging/install-packages.sh test
cmake --preset fuzz -DTARNWICK_FUZZ_SECONDS="$fuzz_seconds" -DTARNWICK_FUZZ_SEED="$fuzz_seed"
cmake --build --preset fuzz
ctest --preset fuzz

cmake --preset release
cmake --build --preset release
ctest --preset release
if [ "${1:-}" = --long ]; then
  ctest --preset release --build-config long --label-regex long --verbose
fi
