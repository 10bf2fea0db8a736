#!/usr/bin/env bash
# Regrows an aggregate of the gallery and compares the positions of its first branches with those recorded there.
#
#   docs/gallery/check.sh PROGRAM [NAME]
set -eu
program=$(realpath "${1:?the program}")
name=${2:-crown}
. "$(dirname "${BASH_SOURCE[0]}")/grow.sh"

describe "$name" | grep -q . || fail "no aggregate $name"
set_up < <(describe "$name")
recorded=$(value hash)
[ -n "$recorded" ] || fail "no hash is recorded for $name"
shortest_burst=1 # more than is compared does no harm
grow_to $((hashed_branches + $(reported "Number of roots")))
found=$(hash_of_first $hashed_branches)
[ "$found" = "$recorded" ] || fail "the first $hashed_branches branches of $name have the hash $found, not $recorded"
finish
