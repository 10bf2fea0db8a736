#!/usr/bin/env bash
# machines.sh FOLDER: builds the table of hashes in FOLDER with several compilers, levels of optimisation and instruction sets, and
# for 64-bit Arm, which is emulated; each prints the same table.
set -euo pipefail
source=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
folder=$(mkdir -p "$1" && cd "$1" && pwd)
failed=0

# build NAME COMPILER FLAGS [CMAKE ARGUMENT...]
build() {
    cmake -S "$source" -B "$folder/$1" -G Ninja -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_COMPILER="$2" -DCMAKE_CXX_FLAGS="$3" \
        -DSARKELO_VIEWER=OFF "${@:4}" >/dev/null
    cmake --build "$folder/$1" --target bits >/dev/null
}

# compare NAME [COMMAND that runs the program], with `threads` threads
compare() {
    echo "$*"
    "${@:2}" "$folder/$1/bits" "${threads:-1}" | diff - "$source/tests/bits/hashes.txt" || failed=1
}

# Fetches the Arm libraries of the system's own release into a folder; fails where its archive has none.
fetch_arm_libraries() {
    local options="-oAPT::Architecture=arm64 -oAPT::Architectures=arm64 -oDir::State::Lists=$folder/lists -oDir::State::status=/dev/null"
    [ ! -e "$folder/arm/usr/include/mpfr.h" ] || return 0
    mkdir -p "$folder/lists/partial" "$folder/packages" "$folder/arm"
    # shellcheck disable=SC2086
    (cd "$folder/packages" && apt-get $options update && apt-get $options download libmpfr-dev libgmp-dev) >/dev/null 2>&1 || return 1
    dpkg -x "$folder"/packages/libmpfr-dev*.deb "$folder/arm"
    dpkg -x "$folder"/packages/libgmp-dev*.deb "$folder/arm"
}

for compiler in g++ clang++-14; do
    for level in -O0 -O3; do
        build $compiler$level $compiler $level
        compare $compiler$level
        compare $compiler$level env GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX2,-FMA,-FMA4
    done
done

if grep -qw fma /proc/cpuinfo && grep -qw avx2 /proc/cpuinfo; then
    build g++-fma g++ "-O3 -mfma -mavx2"
    compare g++-fma
else
    echo "g++-fma: not run: this processor has no FMA or no AVX2"
fi

if fetch_arm_libraries; then
    arm=$folder/arm/usr
    build aarch64 aarch64-linux-gnu-g++ "-O2 -isystem $arm/include/aarch64-linux-gnu" -DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR=aarch64 \
        -DCMAKE_EXE_LINKER_FLAGS=-static -DMPFR_INCLUDE_DIR="$arm/include" -DMPFR_LIBRARY="$arm/lib/aarch64-linux-gnu/libmpfr.a" \
        -DGMP_LIBRARY="$arm/lib/aarch64-linux-gnu/libgmp.a" -DHDF5_LIBRARY=unused
    compare aarch64 qemu-aarch64
    threads=2 compare aarch64 qemu-aarch64
else
    echo "aarch64: not run: this system's archive has no Arm libraries"
fi
exit $failed
