#!/usr/bin/env bash
# machines.sh FOLDER: builds the table of hashes with several compilers, levels of optimisation and instruction sets, runs it with and
# without the processor's FMA and AVX2, and on 64-bit Arm under emulation: it is the same everywhere. Builds in FOLDER.
set -euo pipefail
source=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
folder=$(mkdir -p "$1" && cd "$1" && pwd)
expected=$source/tests/bits/hashes.txt
failed=0

# build NAME COMPILER FLAGS [CMAKE ARGUMENT...]
build() {
    local name=$1 compiler=$2 flags=$3
    shift 3
    cmake -S "$source" -B "$folder/$name" -G Ninja -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags" \
        -DSARKELO_VIEWER=OFF "$@" >/dev/null
    cmake --build "$folder/$name" --target bits >/dev/null
}

# compare NAME WHAT COMMAND...
compare() {
    local name=$1 what=$2
    shift 2
    if "$@" "$folder/$name/bits" "$expected" >"$folder/table.txt"; then
        echo "$name, $what: the same $(wc -l <"$expected") hashes"
    else
        echo "$name, $what: differs:"
        diff "$folder/table.txt" "$expected" || true
        failed=1
    fi
}

# Fetches the Arm libraries of the system's own release into a folder; fails where its archive has none.
fetch_arm_libraries() {
    local options="-oAPT::Architecture=arm64 -oAPT::Architectures=arm64 -oDir::State::Lists=$folder/lists -oDir::State::status=/dev/null"
    [ ! -e "$folder/arm/usr/include/mpfr.h" ] || return 0
    mkdir -p "$folder/lists/partial" "$folder/packages" "$folder/arm"
    # shellcheck disable=SC2086
    (cd "$folder/packages" && apt-get $options update && apt-get $options download libmpfr-dev libgmp-dev) >/dev/null 2>&1 || return 1
    local package
    for package in "$folder"/packages/*.deb; do
        dpkg -x "$package" "$folder/arm"
    done
}

without_fma=(env GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX2,-FMA,-FMA4)
for compiler in g++ clang++-14; do
    for level in -O0 -O3; do
        name=$compiler$level
        build "$name" "$compiler" "$level"
        compare "$name" "the library as it is"
        compare "$name" "the library without FMA and AVX2" "${without_fma[@]}"
    done
done

if grep -qw fma /proc/cpuinfo && grep -qw avx2 /proc/cpuinfo; then
    build g++-fma g++ "-O3 -mfma -mavx2"
    compare g++-fma "instructions of FMA and AVX2"
else
    echo "g++-fma: not run: this processor has no FMA or no AVX2"
fi

if fetch_arm_libraries; then
    arm=$folder/arm/usr
    build aarch64 aarch64-linux-gnu-g++ "-O2 -isystem $arm/include/aarch64-linux-gnu" -DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR=aarch64 \
        -DCMAKE_EXE_LINKER_FLAGS=-static -DMPFR_INCLUDE_DIR="$arm/include" -DMPFR_LIBRARY="$arm/lib/aarch64-linux-gnu/libmpfr.a" \
        -DGMP_LIBRARY="$arm/lib/aarch64-linux-gnu/libgmp.a" -DHDF5_LIBRARY=unused
    compare aarch64 "under emulation" qemu-aarch64
else
    echo "aarch64: not run: this system's archive has no Arm libraries"
fi

# Arithmetic that rounds to more than double is refused.
if g++ -std=c++20 -I"$source" -mfpmath=387 -fsyntax-only "$source/geom/elementary.cpp" 2>/dev/null; then
    echo "x87 arithmetic is not refused"
    failed=1
fi
exit $failed
