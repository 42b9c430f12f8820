#!/usr/bin/env bash
# ./run.sh               installs what is missing, builds, and opens the window beside a simulated
#                        device that echoes; without a display the window drives itself on a virtual one
# ./run.sh upgrade-demo  gives a simulated module new firmware
set -eu
cd "$(dirname "$0")"
case "${1:-}" in
  "" | upgrade-demo) ;;
  *) echo "usage: run.sh [upgrade-demo]" >&2; exit 2 ;;
esac

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

# Starts a simulated device for as long as this script runs; its port is in $port.
simulate() {
  "$bin/src/simulator/tarnwick-sim" "$@" >"$work/port" &
  simulator=$!
  trap 'kill "$simulator" 2>/dev/null; wait "$simulator" 2>/dev/null || true' EXIT
  while ! [ -s "$work/port" ] && kill -0 "$simulator" 2>/dev/null; do sleep 0.05; done
  port=$(head -n 1 "$work/port")
  [ -n "$port" ]
}

window() {
  simulate echo
  if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo "A device that echoes is at $port: press \"open\" (打开) in the window and choose it."
    cd "$work"
    "$bin/src/terminal/tarnwick"
  else
    echo "No display: the window runs on a virtual one. What it shows:"
    echo
    LC_ALL=C.UTF-8 xvfb-run -a "$bin/demo/tarnwick-tour" "$port" en_US "$work/pictures"
    echo
    echo "Its picture is at $work/pictures/session.png"
  fi
}

upgrade_demo() {
  rm -f "$work/module.bin"
  head -c 60000 /dev/urandom >"$work/M1_2.3.bin"
  simulate boot --image "$work/module.bin" --baud 115200
  echo "A module in application mode is at $port. Its new firmware:"
  (
    cd "$work"
    set -x
    "$bin/src/cli/tarnwickctl" upgrade M1_2.3.bin --link "serial:$port" --frame crc16
    cmp M1_2.3.bin module.bin
  )
  echo "The module's memory holds what the file does."
}

case "${1:-}" in
  upgrade-demo) upgrade_demo ;;
  *) window ;;
esac
