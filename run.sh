#!/usr/bin/env bash
# Installs what is missing, builds, and opens the window beside a simulated device that echoes.
# Without a display the window runs on a virtual one and drives itself.
set -eu
cd "$(dirname "$0")"

packaging/install-packages.sh run
cmake --preset release -DTARNWICK_TESTS=OFF -DTARNWICK_BENCH=OFF -B build/run >/dev/null
cmake --build build/run
bin=$PWD/build/run
work=$bin/desk # the window keeps its settings in the folder it is started in
mkdir -p "$work"
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then # as where nobody has logged in; virtual ports live in it
  export XDG_RUNTIME_DIR=$work/runtime
  mkdir -p -m 700 "$XDG_RUNTIME_DIR"
fi

"$bin/src/simulator/tarnwick-sim" echo --name echo >"$work/port" &
simulator=$!
trap 'kill "$simulator" 2>/dev/null; wait "$simulator" 2>/dev/null || true' EXIT
while ! [ -s "$work/port" ] && kill -0 "$simulator" 2>/dev/null; do sleep 0.05; done
port=$(head -n 1 "$work/port")
[ -n "$port" ] || exit 1

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  echo "A device that echoes is at $port: press \"open\" in the window and choose it."
  cd "$work"
  "$bin/src/terminal/tarnwick"
else
  echo "No display: the window runs on a virtual one. What it shows:"
  echo
  LC_ALL=C.UTF-8 xvfb-run -a "$bin/demo/tarnwick-tour" "$port" "${1:-en_US}" "$work/pictures"
  echo
  echo "Its picture is at $work/pictures/session.png"
fi
