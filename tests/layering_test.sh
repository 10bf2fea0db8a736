#!/usr/bin/env bash
# No file includes a header of a room to its right, and no core file a header of a toolkit. layering_test.sh FOLDER
set -u
cd "$1" || exit 1
faults=0
rooms="base geom search growth surface analysis export image recipe archive toolkit viewer app batch"

# The rooms whose headers each room must not include
results="analysis export image" files="recipe archive" fronts="viewer app batch"
while read -r room right; do
    for forbidden in $(eval "echo $right"); do
        if grep -srnE "^#include \"$forbidden/" "$room" --include='*.h' --include='*.cpp'; then
            echo "$room/ must not include $forbidden/"
            faults=1
        fi
    done
done <<'RIGHT'
base geom search growth surface $results $files toolkit $fronts
geom base search growth surface $results $files toolkit $fronts
search surface $results $files toolkit $fronts
growth $results $files $fronts
surface $results $files $fronts
analysis $files toolkit $fronts
export $files $fronts
image search growth surface analysis export $files toolkit $fronts
recipe archive toolkit $fronts
archive toolkit $fronts
toolkit search growth surface $results $files $fronts
viewer app batch
app batch
batch toolkit viewer app
RIGHT

# No circle of files, each header with its source file
circles=$(grep -rE '^#include ".*\.h"' $rooms --include='*.h' --include='*.cpp' |
    sed -E 's#^([^:]*)\.(h|cpp):.include "(.*)\.h"#\1 \3#' | tsort 2>&1 >/dev/null)
if [ -n "$circles" ]; then
    echo "files include each other in a circle: $circles"
    faults=1
fi

toolkits=$(tests/toolkit_files.sh)
for file in $(find ${rooms/toolkit viewer app/} -name '*.h' -o -name '*.cpp'); do
    grep -qx "${file%.*}" <<<"$toolkits" && continue
    included=$(sed -nE 's/^#include "(.*)\.h"$/\1/p' "$file" | grep -Fx "$toolkits") ||
        included=$(grep -nE '#include <(GL/|EGL/|X11/|forms\.h)' "$file") || continue
    echo "$file is core and must not use a toolkit: $included"
    faults=1
done
if grep -rnE '#include <(hdf5|toml|nlohmann)' ${rooms/recipe archive/} --exclude-dir=batch ||
    grep -rnE '#include <CLI/' ${rooms/app batch/} --exclude-dir=recipe; then
    echo "only recipe/, archive/ and batch/ know HDF5, TOML and JSON, and only recipe/, app/ and batch/ command lines"
    faults=1
fi
if grep -n '#include' growth/state.h | grep -v '"geom/'; then
    echo "growth/state.h includes nothing but geom/"
    faults=1
fi
exit $faults
