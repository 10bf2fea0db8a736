#!/usr/bin/env bash
# "-h" anywhere prints the usage text and ends with status 255, with no display.
set -u
program=$1 version=$2
unset DISPLAY
expected=$(mktemp)
trap 'rm -f "$expected"' EXIT
cat >"$expected" <<END
Usage: $program [command line options]
Command line options
       -h    this text
       -d    more verbose mode
       -f    full screen
       -s    active (quad buffer) stereo
      -ss    dual screen stereo
Mouse controls
     left    rotate camera
   middle    roll camera
    right    menus
Function keys: see menus
Keyboard commands
        q    quit
        h    reset camera
      [,]    roll camera
      <,>    more camera forward, backward
      +,-    zoom camera in, out
      a,A    autospin speed increase/decrease
        w    window dump to TGA file
Version: $version
END
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
