#!/usr/bin/env bash
# Files written by another program, admesh, are read whole: both formats of a surface give the same faces and bounds.
set -eu
summary=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# A pyramid of four sides and a base of two triangles.
awk 'BEGIN {
    split("1 1 0 -1 1 0 -1 -1 0 1 -1 0", c)
    print "solid pyramid"
    for (i = 0; i < 4; i++) {
        a = 3 * i + 1; b = 3 * ((i + 1) % 4) + 1
        print "facet normal 0 0 0\nouter loop"
        print "vertex", c[a], c[a+1], 0; print "vertex", c[b], c[b+1], 0; print "vertex 0 0 2.5\nendloop\nendfacet"
    }
    print "facet normal 0 0 0\nouter loop\nvertex 1 1 0\nvertex -1 -1 0\nvertex -1 1 0\nendloop\nendfacet"
    print "facet normal 0 0 0\nouter loop\nvertex 1 1 0\nvertex 1 -1 0\nvertex -1 -1 0\nendloop\nendfacet"
    print "endsolid pyramid"
}' >pyramid.stl

admesh --scale=3 --write-ascii-stl=ascii.stl --write-binary-stl=binary.stl pyramid.stl >/dev/null
expected="6 -3.0000 3.0000 -3.0000 3.0000 0.0000 7.5000"
sed 's/$/\r/' ascii.stl >crlf.stl
for file in ascii.stl binary.stl crlf.stl; do
    found=$("$summary" "$file")
    if [ "$found" != "$expected" ]; then
        echo "$file: $found, expected $expected"
        exit 1
    fi
done
