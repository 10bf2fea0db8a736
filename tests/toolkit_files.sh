#!/usr/bin/env bash
# Prints the files that use a toolkit, without their ending, one a line: what CMakeLists.txt lists for sarkelo_viewer,
# sarkelo_window and sarkelo_pictures. All other files of the rooms are core.
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
sed -nE '/add_library\(sarkelo_(viewer|window|pictures) STATIC/,/\)/ s/^ +([a-z_/]+)\.cpp\)?$/\1/p' CMakeLists.txt
printf '%s\n' app/main app/view app/view_command
