#!/bin/bash
# render.sh SVG ICO: draws an icon at 16, 24, 32 and 48 pixels, each in 32 bits and in 256
# colours. Windows before XP shows the latter; its pixels are there or not there, so what
# is half there is mixed with white.
# Nothing to do when the icon is newer: the presets share them, and each asks.
set -euo pipefail
svg=$1 ico=$2
if [ "$ico" -nt "$svg" ] && [ "$ico" -nt "$0" ]; then exit 0; fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

images=()
for size in 16 24 32 48; do
  full=$work/$size-32.png few=$work/$size-8.png
  rsvg-convert --width $size --height $size --output "$full" "$svg"
  # 255 colours, and one for where nothing is.
  convert "$full" \
    \( -clone 0 -background white -alpha remove -alpha off +dither -colors 255 \) \
    \( -clone 0 -alpha extract -threshold 50% \) \
    -delete 0 -alpha off -compose CopyOpacity -composite -define png:color-type=6 "$few"
  images+=(--bit-depth=8 "$few" --bit-depth=32 "$full")
done
icotool --create --output "$work/icon.ico" "${images[@]}"
mv "$work/icon.ico" "$ico" # whole, or not at all
