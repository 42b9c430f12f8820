#!/usr/bin/env bash
# ./run.sh               installs what is missing, builds, and opens the window beside a simulated
#                        device that echoes; without a display the window drives itself on a virtual one
# ./run.sh upgrade-demo  gives a simulated module new firmware
# ./run.sh workbench     opens the workbench on four simulated modules, a cnet device with others in
#                        reach and a device that echoes; without a display it is driven on a virtual
#                        one, in both languages and palettes
set -eu
cd "$(dirname "$0")"
case "${1:-}" in
  "" | upgrade-demo | workbench) ;;
  *) echo "usage: run.sh [upgrade-demo|workbench]" >&2; exit 2 ;;
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

simulators=""
end_simulators() {
  for simulator in $simulators; do
    kill "$simulator" 2>/dev/null || true
    wait "$simulator" 2>/dev/null || true
  done
  simulators=""
}
trap end_simulators EXIT

# Starts a simulated device for as long as this script runs; its port is in $port.
simulate() {
  : >"$work/port"
  "$bin/src/simulator/tarnwick-sim" "$@" >"$work/port" &
  simulator=$!
  simulators="$simulators $simulator"
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

# Three modules with old firmware and a Dorv module, whose ports are in $ports.
simulate_modules() {
  ports=""
  for number in 1 2 3; do
    rm -f "$work/module$number.bin"
    simulate boot --name "module$number" --image "$work/module$number.bin" --baud 115200 \
      --hard-info A10203
    ports="$ports $port"
  done
  simulate dorv
  ports="$ports $port"
}

# For the pages Search and Exchanges.
simulate_others() {
  simulate cnet --device 12,1,0x1234 --device 12,1,0x2345 --device 30,2,0x3456 --device 17,0,0x0102
  cnet=$port
  simulate echo --delay 12
  echo=$port
}

workbench() {
  head -c 100000 /dev/urandom >"$work/M1_2.3.bin"
  simulate_modules
  simulate_others
  if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo "Modules are at$ports, the new firmware of the first three is $work/M1_2.3.bin:"
    echo "choose the first one's link, connect, choose the file, start. The last one has settings."
    echo "A cnet device for the page Search is at $cnet,"
    echo "one that echoes, for the page Exchanges, at $echo."
    "$bin/src/workbench/tarnwick-workbench"
    return
  fi
  echo "No display: the workbench runs on a virtual one. What it says:"
  for look in "en_US light 1" "en_US dark 2" "zh_CN light 2" "zh_CN dark 1"; do
    # shellcheck disable=SC2086 # a word each
    set -- $look
    pictures=$work/pictures/$1-$2-scale$3
    echo
    # shellcheck disable=SC2086 # a word each
    LC_ALL=C.UTF-8 QT_SCALE_FACTOR=$3 xvfb-run -a -s "-screen 0 2400x1800x24" \
      "$bin/demo/tarnwick-workbench-tour" "$1" "$2" "$work/M1_2.3.bin" "$pictures" $ports
    LC_ALL=C.UTF-8 QT_SCALE_FACTOR=$3 xvfb-run -a -s "-screen 0 2400x1800x24" \
      "$bin/demo/tarnwick-workbench-devices-tour" "$1" "$2" "$pictures" "$cnet" "$echo"
    echo "Its pictures are in $pictures"
    end_simulators
    simulate_modules
    simulate_others
  done
}

case "${1:-}" in
  upgrade-demo) upgrade_demo ;;
  workbench) workbench ;;
  *) window ;;
esac
