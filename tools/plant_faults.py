#!/usr/bin/env python3
"""plant_faults.py [--check | NAME...]: plants faults in a copy of the sources, one at a time, and tells which the tests catch.

The faults stand in planted_faults.txt beside this script: "== NAME: FILE", what stands there, "-> ", and what takes its place.
Each is built and tested in build/faults; a fault that no test catches is printed with a star. Takes about half a minute a fault.
With --check nothing is built: it only tells whether every fault can still be planted.
"""

import pathlib
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
COPY = ROOT / "build" / "faults"
PROGRAMS = ["viewer_tests", "core_tests", "files_tests", "fault_tests"]


def read_faults():
    faults = []
    for block in (ROOT / "tools" / "planted_faults.txt").read_text().split("\n== ")[1:]:
        head, body = block.split("\n", 1)
        name, file = head.split(": ")
        old, new = body.split("\n-> ", 1)
        faults.append((name, file, old.strip("\n"), new.rstrip("\n")))
    return faults


def run(*command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)


def copy_sources():
    COPY.mkdir(parents=True, exist_ok=True)
    files = run("git", "ls-files", "-co", "--exclude-standard", cwd=ROOT).stdout.split("\n")
    for file in filter(None, files):
        source, target = ROOT / file, COPY / file
        if source.is_file() and (not target.exists() or target.read_bytes() != source.read_bytes()):
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(source, target)


def build():
    return run("cmake", "--build", COPY / "build", "--target", *PROGRAMS).returncode == 0


def catchers():
    """The tests that fail, of the first program in which any does."""
    for program in PROGRAMS:
        try:
            result = run(COPY / "build" / "tests" / program, "--gtest_brief=1", cwd=COPY / "build", timeout=300)
        except subprocess.TimeoutExpired:
            return [program + " does not end"]
        failed = [line.split("] ")[1].split(" (")[0].split(",")[0] for line in result.stdout.split("\n")
                  if line.startswith("[  FAILED  ]") and "." in line]
        if result.returncode != 0:
            return sorted(set(failed)) or [program + " ends early"]
    return []


def main():
    for name, file, old, _ in read_faults():
        if (ROOT / file).read_text().count(old) != 1:
            sys.exit(f"{name}: the text does not stand once in {file}")
    if sys.argv[1:] == ["--check"]:
        return
    copy_sources()
    run("cmake", "-S", COPY, "-B", COPY / "build", "-G", "Ninja", "-DSARKELO_TESTS=ON")
    if not build() or catchers():
        sys.exit("without a fault the tests do not pass")
    missed = total = 0
    for name, file, old, new in read_faults():
        if len(sys.argv) > 1 and name not in sys.argv[1:]:
            continue
        path = COPY / file
        text = path.read_text()
        path.write_text(text.replace(old, new))
        found = catchers() if build() else ["does not build"]
        path.write_text(text)
        total += 1
        missed += not found
        print(f"{' ' if found else '*'} {name} ({file}): {', '.join(found[:4]) or 'not caught'}", flush=True)
    print(f"{total - missed} of {total} caught")


main()
