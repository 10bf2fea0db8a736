#!/usr/bin/env bash
# Makes series.png: four pictures of a film and four of a turntable. Needs the release build and what ./check installs.
set -eu
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/grow.sh"

"$build/sarkelo-grow" --particles 20000 -o default.sarkelo.h5 --quiet
"$build/sarkelo-grow" "$here/../gallery/bottle.toml" -o bottle.sarkelo.h5 --quiet
"$build/sarkelo-view" default.sarkelo.h5 --picture film.png --film 100 --size 300x300 >film.txt
"$build/sarkelo-view" bottle.sarkelo.h5 --picture round.png --turntable 12 --size 300x300 >round.txt
for picture in film-00{10,40,70} film-0100 round-000{1,3,5,7}; do
    pngtopnm "$picture.png" >"$picture.ppm"
done
pnmcat -lr film-00{10,40,70}.ppm film-0100.ppm >above.ppm
pnmcat -lr round-000{1,3,5,7}.ppm >below.ppm
pnmcat -tb above.ppm below.ppm | small_png "$here/series.png"
