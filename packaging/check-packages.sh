#!/usr/bin/env bash
# Builds the Debian packages, has lintian look at them, unpacks them into a fresh root and uses what is
# there: the programs run, their binaries are hardened, and the examples build against the library.
set -eu
cd "$(dirname "$0")/.."
build=$PWD/build/package
root=$build/root

cmake --preset package >/dev/null
cmake --build --preset package
export LC_ALL=C.UTF-8 # not before, as a cache of objects keeps those of each language apart
rm -rf "$build"/*.deb "$root"
(cd "$build" && cpack)
lintian --allow-root --fail-on error,warning "$build"/*.deb
for package in "$build"/*.deb; do
  dpkg -x "$package" "$root"
done
usr=$root/usr

echo "Desktop entry and metainfo"
desktop-file-validate "$usr"/share/applications/*.desktop
appstreamcli validate --no-net "$usr"/share/metainfo/*.metainfo.xml
for size in 16 22 24 32 48 64 128 256; do
  test -s "$usr/share/icons/hicolor/${size}x$size/apps/tarnwick.png"
done

echo "Hardening"
for program in "$usr"/bin/*; do
  lacks=""
  facts=$(readelf -W --file-header --program-headers --dynamic --dyn-syms "$program")
  for fact in 'Type: *DYN .*Position-Independent Executable' GNU_RELRO 'FLAGS.*BIND_NOW' \
    __stack_chk_fail; do
    grep -q "$fact" <<<"$facts" || lacks="$lacks '$fact'"
  done
  [ -z "$lacks" ] || { echo "${program##*/} lacks$lacks" >&2; exit 1; }
done

# The window and tarnwickctl call nothing whose buffer's size the compiler knows, so checked calls show
# in the simulator alone; that all are built alike shows in their commands.
readelf -W --dyn-syms "$usr/bin/tarnwick-sim" | grep -q '__[a-z]*_chk@'
if grep '"command":' "$build/compile_commands.json" | grep -v -e '-D_FORTIFY_SOURCE=2'; then
  echo "these are built without FORTIFY" >&2
  exit 1
fi

echo "Programs"
for program in tarnwickctl tarnwick-sim; do
  "$usr/bin/$program" --help | grep -q "$program"
  "$usr/bin/$program" --version | grep -q "^$program [0-9]"
  test -s "$usr/share/bash-completion/completions/$program"
  test -s "$usr/share/man/man1/$program.1.gz"
done
# Each window, until it has drawn itself on the offscreen platform, and then until it is asked to end.
home=$build/home
rm -rf "$home"
mkdir -p "$home"
for program in tarnwick tarnwick-workbench; do
  (cd "$home" && HOME=$home QT_QPA_PLATFORM=offscreen exec "$usr/bin/$program") &
  window=$!
  for _ in $(seq 300); do
    grep -q libqoffscreen "/proc/$window/maps" 2>/dev/null && break
    sleep 0.1
  done
  grep -q libqoffscreen "/proc/$window/maps" || { echo "$program doesn't come up" >&2; exit 1; }
  sleep 1
  kill "$window" || { echo "$program ended by itself" >&2; exit 1; }
  wait "$window" || [ $? = 143 ]
done

echo "Examples"
cmake -S "$usr/share/doc/libtarnwick-dev/examples" -B "$build/example" --fresh \
  -D Tarnwick_DIR="$(dirname "$(find "$usr/lib" -name TarnwickConfig.cmake)")" >/dev/null
cmake --build "$build/example"
for example in "$usr"/share/doc/libtarnwick-dev/examples/*.cpp; do
  example=$(basename "$example" .cpp)
  ("$build/example/$example" 2>&1 || true) | grep -q usage || { echo "$example doesn't run" >&2; exit 1; }
done
echo "The packages are sound."
