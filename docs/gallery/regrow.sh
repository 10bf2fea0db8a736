#!/usr/bin/env bash
# Regrows an aggregate of the gallery on a virtual display and makes its picture.
#
#   docs/gallery/regrow.sh NAME [PICTURE.png]
#
# The picture is docs/pictures/gallery-NAME.png unless told otherwise. Needs the release build, or the program that SARKELO
# names, and the packages that ./check installs.
set -eu
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
name=${1:?the name of an aggregate in gallery.txt}
picture_file=$(realpath -m "${2:-$here/../pictures/gallery-$name.png}")
program=$(realpath "${SARKELO:-$here/../../build/release/sarkelo}")
. "$here/grow.sh"

describe "$name" | grep -q . || fail "no aggregate $name in the gallery"
set_up < <(describe "$name")
grow_to "$(value particles)"
echo "$name: $grown particles, radius $(reported "Current radius")"
echo "hash: $(hash_of_first $hashed_branches)"
take_picture window.ppm
shrink window.ppm 420 "$picture_file"
finish
