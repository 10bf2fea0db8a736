#!/usr/bin/env bash
# Grows the first branches of every aggregate of the gallery from its recipe, and compares their positions with those recorded
# for the window.
#
#   docs/gallery/check.sh SARKELO-GROW
set -eu
grow=$(realpath "${1:?the program sarkelo-grow}")
gallery=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
branches=2000

checked=0
while read -r name hash; do
    # Roots are no branches: 25 at most here.
    "$grow" "$gallery/$name.toml" --particles $((branches + 25)) -o "$name.sarkelo.h5" --save "geom-points:$name.geom" --quiet
    found=$(head -n $((10 * branches)) "$name.geom" | sha256sum | cut -d ' ' -f 1)
    [ "$found" = "$hash" ] || { echo "the first $branches branches of $name have the hash $found, not $hash" >&2; exit 1; }
    checked=$((checked + 1))
done < <(awk '/^\[/ { name = substr($0, 2, length($0) - 2) } $1 == "hash:" { print name, $2 }' "$gallery/gallery.txt")
[ "$checked" -eq 8 ] || { echo "$checked aggregates have a hash" >&2; exit 1; }
