#!/usr/bin/env bash
# Grows an aggregate of the gallery from its recipe and makes its picture, without a screen.
#
#   docs/gallery/regrow.sh NAME [PICTURE.png]
#
# The picture is docs/pictures/gallery-NAME.png unless another file is named. Needs the release build, or the one that BUILD names,
# and the packages that ./check installs.
set -eu
gallery=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
name=${1:?the name of an aggregate in gallery.txt}
picture_file=$(realpath -m "${2:-$gallery/../pictures/gallery-$name.png}")
. "$gallery/../pictures/grow.sh"

[ -r "$gallery/$name.toml" ] || { echo "no aggregate $name in the gallery" >&2; exit 1; }
# said WHAT: what gallery.txt says of the aggregate.
said() {
    awk -v name="[$name]" -v what="$1" '/^\[/ { found = $0 == name; next } found && sub("^" what ": ", "")' "$gallery/gallery.txt"
}
tilt=$(said tilt) size=$(said size)
"$build/sarkelo-grow" "$gallery/$name.toml" -o grown.sarkelo.h5 --quiet
"$build/sarkelo-view" grown.sarkelo.h5 --picture grown.png --size "${size:-1200x1200}" --fit --tilt "${tilt:-0}"
pngtopnm grown.png | pnmcrop -black -margin=20 2>/dev/null >cropped.ppm
read -r width height < <(pnmfile cropped.ppm | sed -E 's/.* ([0-9]+) by ([0-9]+) .*/\1 \2/')
side=$((width > height ? width : height))
pnmpad -black -width "$side" -height "$side" cropped.ppm | pamscale -xyfit 420 420 | small_png "$picture_file"
