#!/usr/bin/env bash
# package_test.sh BUILD: the Debian packages of a build hold everything in its place, lintian finds no error in them, and
# sarkelo-grow needs neither X11 nor OpenGL.
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "$1" >&2; exit 1; }
cpack --config "$1/CPackConfig.cmake" -B "$work" >"$work/cpack.log" 2>&1 || fail "$(cat "$work/cpack.log")"

# What is completed after the given words
completed() {
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
    local function=${1##*/}
    "_${function//-/_}" 2>/dev/null
    printf '%s\n' "${COMPREPLY[@]}" | sort -u
}

# same_options PROGRAM PREFIX OPTIONS: the manual page describes these options, and they are completed after the prefix.
same_options() {
    [ "$(wc -w <<<"$3")" -ge 5 ] || fail "$1 has only the options $3"
    [ "$3" = "$(completed "$1" "$2" | grep -e "$2")" ] || fail "completed: $(completed "$1" "$2")"
    [ "$3" = "$(zcat "share/man/man1/$1.1.gz" | grep '^\.B' | grep -oE '\\-[a-z\\-]+' | tr -d '\\' | grep -e "$2" | sort -u)" ] ||
        fail "the manual page of $1 describes other options"
}
long_options() { "bin/$1" --help | grep -oE '^ +(-[a-z],)?--?[a-z-]+' | grep -oE -- '--[a-z-]+' | sort; }

for name in sarkelo sarkelo-grow; do
    package=$(ls "$work/$name"_*.deb)
    lintian --fail-on error --allow-root "$package"
    dpkg-deb -x "$package" "$work/$name"
    cd "$work/$name/usr"
    version=$(dpkg-deb -f "$package" Version)
    for file in bin/$name share/doc/$name/{copyright,changelog.gz}; do
        [ -s "$file" ] || fail "no $file"
    done
    [ -s share/doc/$name/file-formats.md ] || [ -s share/doc/$name/docs/file-formats.md ] || fail "no description of the files"
    [ -z "$(find share/doc -name '*.sh')" ] || fail "scripts that need a clone: $(find share/doc -name '*.sh')"
    zcat "share/doc/$name/changelog.gz" | head -1 | grep -qF "sarkelo ($version)" || fail "the changelog does not name $version"
    for page in share/man/man1/*; do
        warnings=$(LC_ALL=C.UTF-8 man --warnings -E UTF-8 -l "$page" 2>&1 >/dev/null)
        [ -z "$warnings" ] || fail "$warnings"
        zcat "$page" | grep -qF "Sarkelo $version" || fail "$page is not that of $version"
    done
    for file in share/bash-completion/completions/*; do . "$file"; done
done

cd "$work/sarkelo/usr"
for file in share/icons/hicolor/{48x48,128x128,256x256}/apps/sarkelo.png share/doc/sarkelo/README.md \
    share/icons/hicolor/48x48/mimetypes/application-x-sarkelo-aggregate.png; do
    [ -s "$file" ] || fail "no $file"
done
desktop-file-validate share/applications/{sarkelo,sarkelo-view}.desktop
appstreamcli validate --no-net share/metainfo/*.metainfo.xml
grep -q 'pattern="\*.sarkelo.h5"' share/mime/packages/sarkelo.xml
bin/sarkelo -h 2>&1 | grep -qx "Version: $version" || fail "the program is not $version"
same_options sarkelo - "$(bin/sarkelo -h 2>&1 | awk '$1 ~ /^-/ { print $1 }' | sort)"
same_options sarkelo-view -- "$(long_options sarkelo-view)"

cd "$work/sarkelo-grow/usr"
needed=$(ldd bin/sarkelo-grow; dpkg-deb -f "$work"/sarkelo-grow_*.deb Depends)
! grep -iE 'libX|libGL|libglut|libforms' <<<"$needed" || fail "sarkelo-grow needs a display's libraries"
[ "$(bin/sarkelo-grow --version)" = "sarkelo-grow $version" ] || fail "the program is not $version"
same_options sarkelo-grow -- "$(long_options sarkelo-grow)"
[ "$(completed bin/sarkelo-grow --set growth.s)" = "$(printf 'growth.seed=\ngrowth.stickiness=')" ] || fail "$(completed bin/sarkelo-grow --set growth.s)"
bin/sarkelo-grow share/doc/sarkelo-grow/examples/hedge.toml --particles 100 -o "$work/hedge.sarkelo.h5" --quiet
