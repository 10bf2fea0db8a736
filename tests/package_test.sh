#!/usr/bin/env bash
# package_test.sh BUILD: the Debian package of a build holds everything in its place, and lintian finds no error in it.
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cpack --config "$1/CPackConfig.cmake" -B "$work" >"$work/cpack.log" 2>&1 || { cat "$work/cpack.log" >&2; exit 1; }
package=$(ls "$work"/*.deb)
lintian --fail-on error --allow-root "$package"

dpkg-deb -x "$package" "$work/files"
cd "$work/files/usr"
for file in bin/sarkelo share/applications/sarkelo.desktop share/icons/hicolor/{48x48,128x128,256x256}/apps/sarkelo.png \
    share/man/man1/sarkelo.1.gz share/bash-completion/completions/sarkelo share/doc/sarkelo/{copyright,changelog.gz,README.md}; do
    [ -s "$file" ] || { echo "no $file" >&2; exit 1; }
done
[ -z "$(find share/doc -name '*.sh')" ] || { echo "scripts that need a clone: $(find share/doc -name '*.sh')" >&2; exit 1; }
desktop-file-validate share/applications/sarkelo.desktop
appstreamcli validate --no-net share/metainfo/*.metainfo.xml
warnings=$(LC_ALL=C.UTF-8 man --warnings -E UTF-8 -l share/man/man1/sarkelo.1.gz 2>&1 >/dev/null)
[ -z "$warnings" ] || { echo "$warnings" >&2; exit 1; }

version=$(dpkg-deb -f "$package" Version)
zcat share/doc/sarkelo/changelog.gz | head -1 | grep -qF "sarkelo ($version)" || { echo "the changelog does not name $version" >&2; exit 1; }
zcat share/man/man1/sarkelo.1.gz | grep -qF "Sarkelo $version" || { echo "the manual is not that of $version" >&2; exit 1; }
bin/sarkelo -h 2>&1 | grep -qx "Version: $version" || { echo "the program is not $version" >&2; exit 1; }

# Every switch of the usage text is in the manual page and is completed.
. share/bash-completion/completions/sarkelo
COMP_WORDS=(sarkelo -) COMP_CWORD=1
_sarkelo
switches=$(bin/sarkelo -h 2>&1 | awk '$1 ~ /^-/ { print $1 }')
[ "$switches" = "$(printf '%s\n' "${COMPREPLY[@]}")" ] || { echo "completed: ${COMPREPLY[*]}" >&2; exit 1; }
for switch in $switches; do
    zcat share/man/man1/sarkelo.1.gz | grep -qx "\.B \\\\$switch" || { echo "$switch is not in the manual" >&2; exit 1; }
done
