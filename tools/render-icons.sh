#!/usr/bin/env bash
# Draws every picture of src/qrc from tools/icons.txt, the splash and the animated drum as well.
# The results are kept in the repository, so that a build needs no ImageMagick.
set -eu
cd "$(dirname "$0")/.."
out=src/qrc
zoom=8

palette() {
    sed -e 's/{K}/#39424e/g' -e 's/{G}/#7f8b99/g' -e 's/{L}/#e8ecf1/g' -e 's/{B}/#4a8ad4/g' \
        -e 's/{Y}/#e2b04a/g' -e 's/{R}/#d05a4e/g' -e 's/{N}/#58a55c/g' -e 's/{V}/#8a63c8/g'
}

# picture NAME WIDTHxHEIGHT COMMANDS TARGET
picture() {
    local width=${2%x*} height=${2#*x}
    convert -size "$((width * zoom))x$((height * zoom))" xc:none \
        -draw "scale $zoom,$zoom $3" -filter Box -resize "$2" -strip "PNG32:$4"
}

grep -v '^#' tools/icons.txt | palette | while IFS='|' read -r name size commands; do
    picture "$name" "$size" "$commands" "$out/$name.png"
done

# The splash: a brush taking shape over a grid.
grid=""
for i in $(seq 0 20 480); do
    grid="$grid line $i,0 $i,300 line 0,$i 480,$i"
done
convert -size 480x300 gradient:'#232a33'-'#12161b' \
    -stroke '#2f3945' -fill none -draw "$grid" \
    -stroke '#4a8ad4' -strokewidth 2 -fill '#4a8ad430' -draw "polygon 300,60 400,110 300,160 200,110" \
    -stroke '#e2b04a' -fill '#e2b04a30' -draw "polygon 200,110 300,160 300,260 200,210" \
    -stroke '#d05a4e' -fill '#d05a4e30' -draw "polygon 400,110 300,160 300,260 400,210" \
    -stroke none -fill '#e8ecf1' -font DejaVu-Sans-Bold -pointsize 44 -annotate +24+70 'Karvex' \
    -fill '#9d9d9d' -font DejaVu-Sans -pointsize 13 -annotate +26+94 'Tolvane Development Kit' \
    -strip "$out/splash.png"

# The drum of the wait window: one stroke every six frames.
frames=()
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for i in 0 1 2 3 4 5; do
    left=$((i < 3 ? 4 + 4 * i : 20 - 4 * i + 4)) right=$((i < 3 ? 16 - 4 * i : 4 + 4 * (i - 3)))
    commands="stroke {K} stroke-width 1.4 fill {R} polygon 4,18 28,18 28,27 4,27
        fill {R} ellipse 16,27 12,3.5 0,180 fill {L} ellipse 16,18 12,3.5 0,360
        stroke {Y} stroke-width 2 line 3,$left 12,17 line 29,$right 20,17"
    picture drum 32x32 "$(palette <<<"$commands")" "$work/$i.png"
    frames+=("$work/$i.png")
done
convert -delay 10 -loop 0 -dispose Background "${frames[@]}" "$out/drum.gif"
