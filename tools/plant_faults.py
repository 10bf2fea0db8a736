#!/usr/bin/env python3
"""Plants faults in a copy of the sources, one at a time, and reports which of them the short tests catch.

A fault is another operator or number, true for false, a statement left out, or a returned value negated, in a .cpp file of the
rooms. They are drawn at random, evenly over the lines, at most one in a function. One that does not compile, or leaves the
programs as they are byte for byte, is not counted, and another is drawn. None is planted in lines that match LEFT_OUT.
"""
import argparse, json, os, pathlib, random, re, shutil, subprocess, sys, time, zlib

# Targets, the programs that they make, and the commands that test them; the quickest first.
STEPS = [("bits", ["bits"], "./bits | diff - ../../tests/bits/hashes.txt"), ("viewer_tests", ["tests/viewer_tests"], "tests/viewer_tests"),
         ("files_tests", ["tests/files_tests"], "tests/files_tests"), ("core_tests", ["tests/core_tests"], "tests/core_tests"),
         ("all", ["sarkelo", "sarkelo-grow"],
          "ctest -LE long -E '[./]|^bits$' -j2 --stop-on-failure --timeout 300 --repeat until-pass:2")]
OPPOSITES = {"<": ">=", ">": "<=", "<=": ">", ">=": "<", "==": "!=", "!=": "==", "+": "-", "-": "+", "*": "/", "/": "*",
             "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "&&": "||", "||": "&&", "true": "false", "false": "true"}
NARROWER = {"<": "+ 1 <", ">": "> 1 +", "<=": "<", ">=": ">"}  # for integers; none reads beyond the end of an array
NO_CODE = r'//[^\n]*|/\*.*?\*/|R"\(.*?\)"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])\'|^ *#[^\n]*|\bstatic_assert\(.*?\);'
SOURCES = r"^ +((?!base/|search/)\w+/(?!\w*index|\w*rescue)\w+\.cpp)\)?$"  # lines of CMakeLists.txt
LEFT_OUT = r"""(?xm)^.*(?: reserve\( | capacity\( | \bfree\( | fflush\( | OutOfMemory | bad_alloc | errno | stderr  # memory, disks
    | \bk(?:\w*(?:Burst|Delay|AtOnce|PerCall)|(?:Most|Fewest|First|Least|Largest|Smallest|Longest|Shortest|Quick)\w*)\ =  # limits
    | ^\ +[\w:]+\ \*?\w+\ =\ (?:[-\d.]+|\{[-\d.,\ ]*\}|true|false|nullptr);                    # values that others replace
    | std::max\([^()]*,\ 1\) | ^\ +[\w:]+\ \w+\[\w+\]).*$             # guards of a division; arrays, by their length"""
KINDS = [(r'(?<=[^"] )([<>]=?|[=!]=|[-+*/]=?|&&|\|\|)(?= [^"])|\b(true|false)\b', lambda old: OPPOSITES[old]),
         (r"(?<![\w.-])(\d+(?:\.\d+)?)(?![\w.])", lambda n: str(float(n) * 1.5 if "." in n else int(n) + max(1, int(n) // 2))),
         (r"\breturn ([^;{}]+);", lambda old: f"!({old})"),
         (r"(?:(?<=[;{}:)])|(?<=else))\s*\n +((?:[^\s=]+ [-+*/|&]?= |[\w:.>[\]-]+\(|[\w.>[\]-]+(?:\+\+|--);).*;)$", lambda _: "{}")]


def draw(folder, files, chance):
    """Yields faults as (file, start and end of what is replaced, what replaces it)."""
    functions = []  # for each line of the files its function (or table): the list of all faults in it
    for file in files:
        text = (folder / file).read_text()
        code = re.sub(NO_CODE, lambda place: re.sub(".", '"' if place[0][0] == '"' else " ", place[0]), text, flags=re.S | re.M)
        code = re.sub(LEFT_OUT, lambda place: " " * len(place[0]), code)
        integers = "|".join({"ncells", *re.findall(r"\bint (\w+)", code)})
        faults = [(file, *place.span(place.lastindex), change(text[slice(*place.span(place.lastindex))]))
                  for pattern, change in [*KINDS, (rf"\b(?:{integers}) ([<>]=?) ", NARROWER.get)]
                  for place in re.finditer(pattern, code, re.M)]
        for part in re.finditer(r".*?(?:\n\}|\Z)", code, re.S):
            functions += [[fault for fault in faults if part.start() <= fault[1] < part.end()]] * part[0].count("\n")
    start = chance.random()
    for k in range(20 * len(functions)):
        if function := functions[int((start + k * 0.6180339887) % 1 * len(functions))]:  # the golden section spreads them evenly
            yield chance.choice(function)
            function.clear()


def run(command, folder, limit=1200):
    """Runs a command with 8 GiB of memory, and kills it after so many seconds; returns what subprocess.run returns."""
    return subprocess.run(f"ulimit -v 8388608; GTEST_FAIL_FAST=1 timeout -s KILL {limit} {command}", shell=True, cwd=folder,
                          text=True, errors="replace", stdout=subprocess.PIPE, stderr=subprocess.STDOUT)


def examine(folder, sound):
    """Builds, and tests what is not equal to sound, until something fails or takes 10 times as long. Returns what fails, and
    what was tested, as {target: [checksums of its programs, seconds]}."""
    tested = {}
    for target, programs, command in STEPS:
        if run(f"cmake --build . --target {target}", folder).returncode != 0:
            return "the compiler", tested
        sums = [zlib.crc32((folder / program).read_bytes()) for program in programs]
        if sound.get(target, [None])[0] != sums:
            start = time.time()
            result = run(command, folder, 10 * sound[target][1] if sound else 1200)
            tested[target] = [sums, time.time() - start]
            if result.returncode != 0:
                failed = re.findall(r"(?<=FAILED  \] )\w+\.\w+|(?<= - )\w+ \(\w+\)$", result.stdout, re.M)[:1]
                return " ".join([target.replace("all", "ctest"), *failed]), tested
    return None, tested


def prepare(copy):
    """Makes the copy equal to the working tree, and examines it if it was not. Returns what was tested."""
    listed = subprocess.check_output(["git", "ls-files", "-co", "--exclude-standard"], text=True).split("\n")
    wanted = {copy / file: pathlib.Path(file) for file in listed if os.path.isfile(file)}
    there = {path for path in copy.rglob("*") if path.is_file() and copy / "build" not in path.parents}
    changed = [path for path in wanted if path not in there or path.read_bytes() != wanted[path].read_bytes()
               or path.stat().st_mode != wanted[path].stat().st_mode]
    record = copy / "build" / "sound.json"
    if changed or there - set(wanted) or not record.is_file():
        print("builds and tests without a fault, in", copy, flush=True)
        for path in [record, *(there - set(wanted))]:
            path.unlink(missing_ok=True)
        for path in changed:
            path.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(wanted[path], path)
        run("cmake --preset check -DSARKELO_BENCH=OFF", copy)
        failing, sound = examine(record.parent / "check", {})
        if failing:
            sys.exit(f"without a fault, {failing} fails")
        record.write_text(json.dumps(sound))
    return json.loads(record.read_text())


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("count", type=int, help="how many faults")
    parser.add_argument("--seed", type=int, default=1, help="which faults (1)")
    parser.add_argument("--build", type=pathlib.Path, default="build/faults", help="folder of the copy, kept (build/faults)")
    parser.add_argument("files", nargs="*", help="sources to plant faults in (all)")
    given = parser.parse_args()
    os.nice(10)
    sound = prepare(copy := given.build.resolve())
    files = given.files or re.findall(SOURCES, (copy / "CMakeLists.txt").read_text(), re.M)
    start, results = os.times(), []
    for file, first, end, new in draw(copy, files, random.Random(given.seed)):
        text = (copy / file).read_text()
        faulty, line = text[:first] + new + text[end:], text.count("\n", 0, first)
        (copy / file).write_text(faulty)
        failing, tested = examine(copy / "build" / "check", sound)
        (copy / file).write_text(text)
        if tested:
            results.append(failing is not None)
            print(f"{file}:{line + 1}: {'caught by ' + failing if failing else 'NOT CAUGHT'}")
            print("-", text.split("\n")[line].strip() + "\n+", faulty.split("\n")[line].strip(), flush=True)
        if len(results) == given.count:
            break
    _, _, user, system, elapsed = (now - then for then, now in zip(start, os.times()))
    print(f"{sum(results)} of {len(results)} faults caught (--seed N for others) in {elapsed:.0f} s, {user + system:.0f} s of CPU time")
    return len(results) < given.count or sum(results) < 0.9 * len(results)


sys.exit(main())
