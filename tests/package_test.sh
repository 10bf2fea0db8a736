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
    "_${function//-/_}" 2>/dev/null || true
    printf '%s\n' "${COMPREPLY[@]}" | sort -u
}

# same_options PROGRAM PREFIX HELP: the manual page describes the options that the help lists, and they are completed.
same_options() {
    local options=$("bin/$1" $3 2>&1 | grep -oE '^ *(-[a-z],)?--?[a-z-]+' | grep -oE -e "$2[a-z-]+" | sort)
    [ "$(wc -w <<<"$options")" -ge 5 ] || fail "$1 has only the options $options"
    [ "$options" = "$(completed "$1" "$2" | grep -e "$2")" ] || fail "completed: $(completed "$1" "$2")"
    [ "$options" = "$(zcat "share/man/man1/$1.1.gz" | grep '^\.B' | grep -oE '\\-[a-z\\-]+' | tr -d '\\' | grep -e "$2" | sort -u)" ] ||
        fail "the manual page of $1 describes other options"
}

for name in sarkelo sarkelo-grow; do
    package=$(ls "$work/$name"_*.deb)
    lintian --fail-on error --allow-root "$package"
    dpkg-deb -x "$package" "$work/$name"
    cd "$work/$name/usr"
    version=$(dpkg-deb -f "$package" Version)
    [ -s share/doc/$name/copyright ] && [ -s "$(find share/doc -name file-formats.md)" ] || fail "a document is missing"
    [ -z "$(find share/doc -name '*.sh')" ] || fail "scripts that need a clone: $(find share/doc -name '*.sh')"
    zcat "share/doc/$name/changelog.gz" | head -1 | grep -qF "sarkelo ($version)" || fail "the changelog does not name $version"
    for page in share/man/man1/*; do
        warnings=$(LC_ALL=C.UTF-8 man --warnings -E UTF-8 -l "$page" 2>&1 >/dev/null)
        [ -z "$warnings" ] && zcat "$page" | grep -qF "Sarkelo $version" || fail "$page is not that of $version: $warnings"
    done
    for file in share/bash-completion/completions/*; do . "$file"; done
done

cd "$work/sarkelo/usr"
icons=(share/icons/hicolor/{48x48,128x128,256x256}/apps/sarkelo.png share/icons/hicolor/48x48/mimetypes/*.png)
[ "$(find "${icons[@]}" share/doc/sarkelo/README.md -size +0 | wc -l)" -eq 5 ] || fail "an icon or the README is missing"
desktop-file-validate share/applications/{sarkelo,sarkelo-view}.desktop
appstreamcli validate --no-net share/metainfo/*.metainfo.xml
grep -q 'pattern="\*.sarkelo.h5"' share/mime/packages/sarkelo.xml
bin/sarkelo -h 2>&1 | grep -qx "Version: $version" || fail "the program is not $version"
same_options sarkelo - -h
same_options sarkelo-view -- --help

cd "$work/sarkelo-grow/usr"
! { ldd bin/sarkelo-grow; dpkg-deb -f "$package" Depends; } | grep -iE 'libX|libGL|libglut|libforms' || fail "sarkelo-grow needs a display's libraries"
[ "$(bin/sarkelo-grow --version)" = "sarkelo-grow $version" ] || fail "the program is not $version"
same_options sarkelo-grow -- --help
completed bin/sarkelo-grow --set growth.s | diff - <(printf 'growth.seed=\ngrowth.stickiness=\n')
bin/sarkelo-grow share/doc/sarkelo-grow/examples/hedge.toml --particles 100 -o "$work/hedge.sarkelo.h5" --quiet
