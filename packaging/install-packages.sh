#!/usr/bin/env bash
# Installs the Debian packages that are missing for running from the sources (run), testing (test),
# testing with Qt 6 (qt6), the checks beside the tests (check), or the pages of the library (docs).
set -eu
build="g++ cmake ninja-build qtbase5-dev libqt5serialport5-dev qttools5-dev qttools5-dev-tools"
window="xvfb xauth fonts-dejavu-core fonts-noto-cjk qttranslations5-l10n"
test="libgtest-dev libgmock-dev libbenchmark-dev socat ser2net libmodbus-dev tshark libssl-dev zlib1g-dev pkg-config clang libclang-rt-14-dev"
qt6="qt6-base-dev qt6-serialport-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools qt6-translations-l10n"
check="clang-format clang-tidy lintian desktop-file-utils appstream dpkg-dev g++-mingw-w64-x86-64-posix"
docs="doxygen"
packages="$build $window"
case "${1:-run}" in
  run) ;;
  test) packages="$packages $test" ;;
  qt6) packages="$packages $test $qt6" ;;
  check) packages="$packages $check" ;;
  docs) packages="$build $docs" ;;
  *) echo "usage: install-packages.sh [run|test|qt6|check|docs]" >&2; exit 2 ;;
esac

missing=""
for package in $packages; do
  status=$(dpkg-query -W -f='${db:Status-Abbrev}' "$package" 2>/dev/null || true)
  [ "$status" = "ii " ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

if [ "$(id -u)" != 0 ]; then
  echo "These Debian packages are missing; install them with:" >&2
  echo "  sudo apt-get install -y$missing" >&2
  exit 1
fi
echo "Installing Debian packages:$missing"
apt-get update -qq
DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >/dev/null
