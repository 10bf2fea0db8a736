#!/usr/bin/env bash
# package_test.sh BUILD: the Debian packages of a build hold everything in its place, lintian finds no error in them, and
# sarkelo-grow needs neither X11 nor OpenGL.
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "$1" >&2; exit 1; }
cpack --config "$1/CPackConfig.cmake" -B "$work" >"$work/cpack.log" 2>&1 || { cat "$work/cpack.log" >&2; exit 1; }

# The options that a page of the manual describes, and what is completed where so many words stand.
described() { zcat "share/man/man1/$1.1.gz" | grep '^\.B' | grep -oE '\\-[a-z\\-]+' | tr -d '\\' | sort -u; }
completed() {
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
    local function=${1##*/}
    "_${function//-/_}" 2>/dev/null
    printf '%s\n' "${COMPREPLY[@]}" | sort -u
}

# same_options NAME: every option of the help is in the manual page and is completed.
same_options() {
    local options
    options=$("bin/$1" --help | grep -oE '^ +(-[a-z],)?--?[a-z-]+' | grep -oE -- '--[a-z-]+' | sort)
    [ "$(wc -l <<<"$options")" -gt 10 ] || fail "only the options $options"
    [ "$options" = "$(completed "$1" -- | grep -e --)" ] || fail "completed: $(completed "$1" --)"
    [ "$options" = "$(described "$1" | grep -e --)" ] || fail "described: $(described "$1")"
}

for name in sarkelo sarkelo-grow; do
    package=$(ls "$work/$name"_*.deb)
    lintian --fail-on error --allow-root "$package"
    dpkg-deb -x "$package" "$work/$name"
    cd "$work/$name/usr"
    for file in "bin/$name" "share/man/man1/$name.1.gz" "share/bash-completion/completions/$name" share/doc/$name/{copyright,changelog.gz,file-formats.md}; do
        [ -s "$file" ] || [ -s "${file/file-formats/docs/file-formats}" ] || fail "no $file"
    done
    [ -z "$(find share/doc -name '*.sh')" ] || fail "scripts that need a clone: $(find share/doc -name '*.sh')"
    warnings=$(LC_ALL=C.UTF-8 man --warnings -E UTF-8 -l "share/man/man1/$name.1.gz" 2>&1 >/dev/null)
    [ -z "$warnings" ] || fail "$warnings"
    version=$(dpkg-deb -f "$package" Version)
    zcat "share/doc/$name/changelog.gz" | head -1 | grep -qF "sarkelo ($version)" || fail "the changelog does not name $version"
    zcat "share/man/man1/$name.1.gz" | grep -qF "Sarkelo $version" || fail "the manual of $name is not that of $version"
    . "share/bash-completion/completions/$name"
done

cd "$work/sarkelo/usr"
for file in share/applications/sarkelo.desktop share/icons/hicolor/{48x48,128x128,256x256}/apps/sarkelo.png share/doc/sarkelo/README.md; do
    [ -s "$file" ] || fail "no $file"
done
desktop-file-validate share/applications/sarkelo.desktop
appstreamcli validate --no-net share/metainfo/*.metainfo.xml
desktop-file-validate share/applications/sarkelo-view.desktop
grep -q 'pattern="\*.sarkelo.h5"' share/mime/packages/sarkelo.xml && [ -s share/icons/hicolor/48x48/mimetypes/application-x-sarkelo-aggregate.png ]
warnings=$(LC_ALL=C.UTF-8 man --warnings -E UTF-8 -l share/man/man1/sarkelo-view.1.gz 2>&1 >/dev/null)
[ -z "$warnings" ] || fail "$warnings"
. share/bash-completion/completions/sarkelo-view
same_options sarkelo-view
bin/sarkelo -h 2>&1 | grep -qx "Version: $version" || fail "the program is not $version"
# Every switch of the usage text is in the manual page and is completed.
switches=$(bin/sarkelo -h 2>&1 | awk '$1 ~ /^-/ { print $1 }' | sort)
[ "$switches" = "$(completed sarkelo -)" ] || fail "completed: $(completed sarkelo -)"
[ "$switches" = "$(described sarkelo)" ] || fail "described: $(described sarkelo)"

cd "$work/sarkelo-grow/usr"
needed=$(ldd bin/sarkelo-grow; dpkg-deb -f "$work"/sarkelo-grow_*.deb Depends)
! grep -iE 'libX|libGL|libglut|libforms' <<<"$needed" || fail "sarkelo-grow needs a display's libraries"
[ "$(bin/sarkelo-grow --version)" = "sarkelo-grow $version" ] || fail "the program is not $version"
same_options sarkelo-grow
[ "$(completed bin/sarkelo-grow --set growth.s)" = "$(printf 'growth.seed=\ngrowth.stickiness=')" ] || fail "$(completed bin/sarkelo-grow --set growth.s)"
bin/sarkelo-grow share/doc/sarkelo-grow/examples/hedge.toml --particles 100 -o "$work/hedge.sarkelo.h5" --quiet
