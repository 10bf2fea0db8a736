#!/usr/bin/env bash
# No file includes a header of a room to its right, and no core file a header of a toolkit. layering_test.sh FOLDER
set -u
cd "$1" || exit 1
faults=0
rooms="base geom search growth surface analysis export image recipe archive toolkit viewer app batch"

# must_not_include FILES PATTERN [GREP OPTION...]: no include of these files matches the pattern.
must_not_include() {
    if grep -srnP --include='*.h' --include='*.cpp' "${@:3}" "^ *#include $2" $1; then
        echo "$1 must not include what these lines include"
        faults=1
    fi
}

# The rooms whose headers each room must not include
results="analysis|export|image" files="recipe|archive" fronts="viewer|app|batch"
while read -r room right; do
    must_not_include "$room" "\"($(eval "echo \"$right\""))/"
done <<'RIGHT'
base geom|search|growth|surface|$results|$files|toolkit|$fronts
geom base|search|growth|surface|$results|$files|toolkit|$fronts
search surface|$results|$files|toolkit|$fronts
growth $results|$files|$fronts
surface $results|$files|$fronts
analysis $files|toolkit|$fronts
export $files|$fronts
image search|growth|surface|analysis|export|$files|toolkit|$fronts
recipe archive|toolkit|$fronts
archive toolkit|$fronts
toolkit search|growth|surface|$results|$files|$fronts
viewer app|batch
app batch
batch toolkit|viewer|app
RIGHT
must_not_include growth/state.h '(?!"geom/)'
must_not_include "${rooms/recipe archive/}" '<(hdf5|toml|nlohmann)' --exclude-dir=batch
must_not_include "${rooms/app batch/}" '<CLI/' --exclude-dir=recipe

# No circle of files, each header with its source file
circles=$(grep -rE '^#include ".*\.h"' $rooms --include='*.h' --include='*.cpp' |
    sed -E 's#^([^:]*)\.(h|cpp):.include "(.*)\.h"#\1 \3#' | tsort 2>&1 >/dev/null)
[ -z "$circles" ] || { echo "files include each other in a circle: $circles"; faults=1; }

toolkits=$(tests/toolkit_files.sh)
for file in $(find ${rooms/toolkit viewer app/} -name '*.h' -o -name '*.cpp' | grep -vxF "$(sed 's/$/.h/p; s/.h$/.cpp/' <<<"$toolkits")"); do
    must_not_include "$file" "(<(GL/|EGL/|X11/|forms\.h)|\"($(tr '\n' '|' <<<"$toolkits"))\.h)"
done
exit $faults
