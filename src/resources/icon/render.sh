#!/usr/bin/env bash
# Makes the PNG and ICO files from the SVG sources. Debian packages: librsvg2-bin imagemagick.
set -eu
cd "$(dirname "$0")"
for name in arrow-up arrow-down plus-sign minus-sign; do
  rsvg-convert -w 16 -h 16 "$name.svg" -o "$name.png"
done
rsvg-convert -w 48 -h 48 arrow-up.svg -o "Arrow Up.png"
rsvg-convert -w 48 -h 48 arrow-down.svg -o "Arrow Down.png"
rsvg-convert -w 64 -h 64 title_corvane.svg -o title_corvane.png
sizes=$(mktemp -d)
for size in 16 32 48 256; do
  rsvg-convert -w "$size" -h "$size" title_corvane.svg -o "$sizes/$size.png"
done
convert "$sizes/16.png" "$sizes/32.png" "$sizes/48.png" "$sizes/256.png" corvane.ico
rm -r "$sizes"
# The icon of the desktop entry, in the sizes that desktops look for.
for size in 16 22 24 32 48 64 128 256; do
  folder=../../../packaging/icons/${size}x${size}/apps
  mkdir -p "$folder"
  rsvg-convert -w "$size" -h "$size" title_corvane.svg -o "$folder/tarnwick.png"
done
