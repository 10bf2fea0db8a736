#!/usr/bin/env bash
# No file includes a header of a room to its right, and no core file a header of a toolkit.
set -u
cd "$1" || exit 1
faults=0

# forbid ROOM RIGHT...: files of ROOM must not include headers of the rooms RIGHT.
forbid() {
    local room=$1 right
    shift
    for right in "$@"; do
        if grep -srnE "^#include \"$right/" "$room" --include='*.h' --include='*.cpp'; then
            echo "$room/ must not include $right/"
            faults=1
        fi
    done
}
fronts="toolkit viewer app batch"
files="recipe archive"
results="analysis export image"
forbid base geom search growth surface $results $files $fronts
forbid geom base search growth surface $results $files $fronts
for room in search growth surface; do
    forbid $room $results $files viewer app batch
done
forbid search surface toolkit
forbid analysis $files $fronts
forbid export $files viewer app batch
forbid image search growth surface analysis export $files $fronts
forbid recipe archive $fronts
forbid archive $fronts
forbid toolkit search growth surface $results $files viewer app batch
forbid viewer app batch
forbid app batch
forbid batch toolkit viewer app

# No circle of files, each header with its source file.
circles=$(find base geom search growth surface analysis export image recipe archive toolkit viewer app batch -name '*.h' -o -name '*.cpp' |
    while read -r file; do
        sed -nE "s#^\#include \"(.*)\.h\"#${file%.*} \1#p" "$file"
    done | tsort 2>&1 >/dev/null)
if [ -n "$circles" ]; then
    echo "files include each other in a circle: $circles"
    faults=1
fi

toolkits=$(tests/toolkit_files.sh)
for file in $(find base geom search growth surface analysis export image recipe archive batch -name '*.h' -o -name '*.cpp'); do
    grep -qx "${file%.*}" <<<"$toolkits" && continue
    included=$(sed -nE 's/^#include "(.*)\.h"$/\1/p' "$file" | grep -Fx "$toolkits") ||
        included=$(grep -nE '#include <(GL/|EGL/|X11/|forms\.h)' "$file") || continue
    echo "$file is core and must not use a toolkit: $included"
    faults=1
done
if grep -nE '#include <(hdf5|toml|nlohmann|CLI/)' -r base geom search growth surface analysis export image toolkit viewer ||
    grep -nE '#include <(hdf5|toml|nlohmann)' -r app; then
    echo "only recipe/, archive/ and batch/ know HDF5, TOML and JSON, and only app/ and batch/ command lines"
    faults=1
fi
if grep -n '#include' growth/state.h | grep -v '"geom/'; then
    echo "growth/state.h includes nothing but geom/"
    faults=1
fi
exit $faults
