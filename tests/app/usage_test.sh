#!/usr/bin/env bash
# "-h" anywhere prints the usage text and ends with status 255, with no display.
set -u
program=$1 version=$2
unset DISPLAY
expected=$(mktemp)
trap 'rm -f "$expected"' EXIT
sed "s|PROGRAM|$program|; s|VERSION|$version|" "$(dirname "$0")/../golden/usage.txt" >"$expected"
for arguments in "-h" "-d -ss nonsense -h" "-h -d"; do
    "$program" $arguments 2>"$expected.found"
    status=$?
    if [ $status -ne 255 ] || ! cmp "$expected" "$expected.found"; then
        echo "\"$arguments\": status $status"
        exit 1
    fi
    rm -f "$expected.found"
done
# Without "-h" and without a display the toolkits say so, and the program ends.
timeout 20 "$program" 2>/dev/null
status=$?
[ $status -ne 0 ] && [ $status -lt 124 ]
