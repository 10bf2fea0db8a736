#!/usr/bin/env bash
# Prints the files that use a toolkit, without their ending, one a line: what CMakeLists.txt lists for sarkelo_viewer and
# sarkelo_window. All other files of the rooms are core.
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
sed -nE '/add_library\(sarkelo_(viewer|window) STATIC/,/\)/ s/^ +([a-z_/]+)\.cpp\)?$/\1/p' CMakeLists.txt
echo app/main
