#!/usr/bin/env bash
# fuzz.sh SECONDS: searches for files that harm the readers, from those in tests/fuzz on, and keeps there what reaches more of the code.
# A file that ends the program stays in build/fuzz.
set -eu
cd "$(dirname "$0")/.."
. packaging/packages.sh
install_missing $BUILD_PACKAGES libgtest-dev clang-14 libclang-rt-14-dev llvm-14
CXX=clang++-14 cmake -S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSARKELO_VIEWER=OFF \
    -DSARKELO_TESTS=ON -DSARKELO_SANITIZE=ON -DSARKELO_FUZZ=ON >/dev/null
cmake --build build/fuzz --target hostile_files
mkdir -p build/fuzz/found
build/fuzz/tests/hostile_files -max_total_time="$1" -max_len=4000 -timeout=20 -rss_limit_mb=4000 -artifact_prefix=build/fuzz/ \
    build/fuzz/found tests/fuzz
build/fuzz/tests/hostile_files -merge=1 -use_counters=0 tests/fuzz build/fuzz/found
