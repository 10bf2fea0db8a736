# What the scripts share that grow aggregates and make pictures of them without a screen. Sourced in an empty directory of its
# own, "$work", which goes at the end; `build` is where the programs are.

build=$(realpath "${BUILD:-$(dirname "${BASH_SOURCE[0]}")/../../build/release}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# small_png PICTURE: writes the PPM picture on standard input as a PNG file of 256 colours.
small_png() {
    pnmquant 256 2>/dev/null | pnmtopng -compression 9 2>/dev/null >"$1"
}
