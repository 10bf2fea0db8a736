#!/usr/bin/env python3
"""bench.py BUILD [--record FILE | --compare FILE]: runs the benchmarks of a build (build/check) and prints what they count.

The file of one machine is bench/results/two-cores.json: for each benchmark its counters, ratios among them. With --record it is
written anew, with --compare each ratio is set beside the recorded one. Ratios say how the code has changed; nanoseconds say more
of the machine.
"""

import json
import pathlib
import subprocess
import sys

PROGRAMS = ["growth_bench", "export_bench", "frame_bench", "statistics_bench"]
# What the library says of every benchmark.
COMMON = {"name", "family_index", "per_family_instance_index", "run_name", "run_type", "repetitions", "repetition_index",
          "threads", "iterations", "real_time", "cpu_time", "time_unit", "label"}


def run(build):
    results = {}
    for program in PROGRAMS:
        output = subprocess.run([build / "bench" / program, "--benchmark_format=json"], check=True, stdout=subprocess.PIPE,
                                stderr=subprocess.DEVNULL).stdout
        for benchmark in json.loads(output)["benchmarks"]:
            counters = {key: float(f"{value:.4g}") for key, value in benchmark.items()
                        if key not in COMMON and isinstance(value, (int, float))}
            results[f"{program}: {benchmark['name']}"] = counters
    return results


def main():
    if len(sys.argv) not in (2, 4) or (len(sys.argv) == 4 and sys.argv[2] not in ("--record", "--compare")):
        sys.exit(__doc__)
    results = run(pathlib.Path(sys.argv[1]))
    recorded = {}
    if len(sys.argv) == 4 and sys.argv[2] == "--record":
        pathlib.Path(sys.argv[3]).write_text(json.dumps(results, indent=1) + "\n")
    elif len(sys.argv) == 4:
        recorded = json.loads(pathlib.Path(sys.argv[3]).read_text())
    for name, counters in results.items():
        print(name)
        for key, value in counters.items():
            before = recorded.get(name, {}).get(key)
            print(f"    {key:20} {value:12g}" + (f"   recorded {before:g}, {value / before:.2f} times" if before else ""))


main()
