#!/usr/bin/env bash
# fuzz.sh SECONDS: searches for files that harm the readers, each reader for so long, side by side. Starts from the
# inputs kept in tests/fuzz and keeps a small set that reaches as much. A finding stays in the build directory, with its report.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
root=$here/..
build=$root/build/fuzz
. "$root/packaging/packages.sh"
install_missing $BUILD_PACKAGES libgtest-dev clang-14 libclang-rt-14-dev llvm-14

CXX=clang++-14 cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSARKELO_VIEWER=OFF \
    -DSARKELO_TESTS=ON -DSARKELO_SANITIZE=ON -DSARKELO_FUZZ=ON >/dev/null
cmake --build "$build" --target stl_input seeds_input

for reader in stl seeds; do
    mkdir -p "$build/found/$reader"
    (cd "$build" && "tests/${reader}_input" -max_total_time="$1" -max_len=4000 -timeout=20 -rss_limit_mb=4000 \
        -artifact_prefix="$build/found/$reader-" -print_final_stats=1 \
        "$build/found/$reader" "$root/tests/fuzz/$reader" >"$build/found/$reader.log" 2>&1) &
done
wait
status=0
for reader in stl seeds; do
    echo "== $reader"
    grep -E "^stat::number_of_executed_units|ERROR|SUMMARY" "$build/found/$reader.log" || true
    "$build/tests/${reader}_input" -merge=1 -use_counters=0 "$root/tests/fuzz/$reader" "$build/found/$reader" >/dev/null 2>&1
    ls "$build/found/$reader"-* 2>/dev/null && status=1
done
exit $status
