#!/usr/bin/env bash
# Installs what is missing, builds, and runs all tests.
set -eu
cd "$(dirname "$0")"
packaging/install-packages.sh test
cmake --preset release
cmake --build --preset release
exec ctest --preset release
