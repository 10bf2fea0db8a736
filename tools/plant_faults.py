#!/usr/bin/env python3
"""Plants faults in a copy of the sources, one at a time, and reports which of them the short tests catch.

Places are found in the .cpp files of the rooms: operators, numbers, true and false, statements to leave out, returned values.
They are drawn at random, evenly over the text, one in a function at most. A fault is not counted, and another is drawn, where
it does not compile or leaves all of TESTS as they are, byte for byte. docs/developing.md says what else is left out.
"""

import argparse, hashlib, json, os, pathlib, random, re, resource, signal, subprocess, sys, time

# In the order of their duration; the scripts of ctest are for those faults that these programs do not catch.
TESTS = {"bits": ["./bits", "../../tests/bits/hashes.txt"], "viewer_tests": ["tests/viewer_tests"],
         "files_tests": ["tests/files_tests"], "core_tests": ["tests/core_tests"],
         "scripts": "ctest -LE long -E [./] --stop-on-failure --timeout 300 --repeat until-pass:2".split()}
NOT_PRODUCT = ("tests/", "tools/", "bench/", "examples/")
OPPOSITES = {"<": ">=", ">": "<=", "<=": ">", ">=": "<", "==": "!=", "!=": "==", "+": "-", "-": "+", "*": "/", "/": "*",
             "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "&&": "||", "||": "&&", "true": "false", "false": "true"}
BOUNDARIES = {"<": "<=", ">": ">=", "<=": "<", ">=": ">"}  # between integers
NO_CODE = r'//[^\n]*|/\*.*?\*/|R"\(.*?\)"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])\'|^ *#[^\n]*|\bstatic_assert\(.*?\);'
OPERATOR = r"(?<=[^\"] )(?:[<>]=?|[=!]=|[-+*/]=?|&&|\|\|)(?= [^\"])|\b(?:true|false)\b"
NUMBER = r"(?<![\w.])\d+(?:\.\d+)?(?:e-?\d+)?(?![\w.])"
STATEMENT = r"^ +((?:[^\s=]+ [-+*/|&]?= |[\w:.>[\]-]+\(|[\w.>[\]-]+(?:\+\+|--);).*;)$"
RETURN = r"\breturn ([^;{}]+);"


def changes(line, text, previous, integers):
    """Yields (start, end, what to put there) for each change that can be made in a line of code."""
    for found in re.finditer(OPERATOR, line):
        beside = re.findall(r"\w+", line[:found.start()])[-1:] + re.findall(r"\w+", line[found.end():])[:1]
        boundary = integers.intersection(beside) and BOUNDARIES.get(found[0])
        yield found.start(), found.end(), boundary or OPPOSITES[found[0]]
    for found in re.finditer(NUMBER, line):
        yield found.start(), found.end(), str(int(found[0]) + 1 if found[0].isdigit() else float(found[0]) * 1.5)
    if found := re.search(RETURN, line):
        yield found.start(1), found.end(1), f"!({text[slice(*found.span(1))]})"
    if (found := re.search(STATEMENT, line)) and re.search(r"([;{}:)]|\belse)$", previous):
        yield found.start(1), found.end(1), "{}"


def find_functions(folder, files):
    """A list for each function (or table): its lines as (file, number of the line, changes)."""
    functions = []
    headers = "".join(path.read_text() for path in folder.glob("*/*.h"))
    for file in files:
        text = (folder / file).read_text()
        code = re.sub(NO_CODE, lambda found: re.sub(r"[^\n]", '"' if found[0][0] == '"' else " ", found[0]), text, flags=re.S | re.M)
        integers = set(re.findall(r"\bint (\w+)", headers + code))
        previous = ""
        functions.append([])
        for number, (line, whole) in enumerate(zip(code.split("\n"), text.split("\n"))):
            functions[-1].append((file, number, list(changes(line, whole, previous, integers))))
            previous = line.rstrip() or previous
            if line.startswith("}"):
                functions.append([])
    return functions


def draw(functions, chance):
    """Yields (file, number of the line, change), each from another function, spread evenly over all lines."""
    lines = [function for function in functions for _ in function]
    position, used = chance.random(), []
    for _ in range(20 * len(lines)):
        position = (position + 0.6180339887) % 1
        function = lines[int(position * len(lines))]
        found = [(file, number, change) for file, number, some in function for change in some]
        if found and function not in used:
            used.append(function)
            yield chance.choice(found)


def run(command, folder, limit):
    """Runs a command in a process group of its own, with 8 GiB at most. Returns its output, and its status or "timeout"."""
    process = subprocess.Popen(command, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                               errors="replace", start_new_session=True, env={**os.environ, "GTEST_FAIL_FAST": "1"},
                               preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (8 << 30, 8 << 30)))
    try:
        return process.communicate(timeout=limit)[0], process.returncode
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        return process.communicate()[0], "timeout"


def copy_sources(root, copy):
    """Makes the copy equal to the working tree; returns whether it was."""
    files = subprocess.check_output(["git", "ls-files", "-co", "--exclude-standard"], cwd=root, text=True).split("\n")
    files = {file for file in files if (root / file).is_file()}
    stale = [path for path in copy.glob("*/**/*") if path.is_file() and copy / "build" not in path.parents
             and str(path.relative_to(copy)) not in files]
    for path in stale:
        path.unlink()
    changed = [file for file in files if not (copy / file).is_file() or (copy / file).read_bytes() != (root / file).read_bytes()]
    for file in changed:
        (copy / file).parent.mkdir(parents=True, exist_ok=True)
        (copy / file).write_bytes((root / file).read_bytes())
        (copy / file).chmod((root / file).stat().st_mode)
    return not changed and not stale


def build(copy):
    """Returns the hashes of the test programs, or nothing if the sources do not compile."""
    if run(["cmake", "--build", "."], copy / "build" / "check", 1200)[1] != 0:
        return None
    return {name: hashlib.sha1((copy / "build" / "check" / command[0]).read_bytes()).hexdigest()
            for name, command in TESTS.items() if name != "scripts"}


def test(copy, names, usual):
    """Runs tests until one fails, each for ten times its usual duration at most. Returns what fails, and all durations."""
    durations = {}
    for name in names:
        start = time.time()
        output, status = run(TESTS[name], copy / "build" / "check", 10 * usual.get(name, 200))
        durations[name] = time.time() - start
        if status != 0:
            failed = re.findall(r"\[  FAILED  \] (\w+\.\w+)|Test +#\d+: (\S+) \.*\**(?:Fail|Time|Exc)", output)
            return name + " (" + ("".join(failed[0]) if failed else f"status {status}") + ")", durations
    return None, durations


def prepare(root, copy):
    """Copies and builds the sources, and runs the tests once without a fault. Returns the programs' hashes and usual durations."""
    record = copy / "usual.json"
    if not copy_sources(root, copy) and record.exists():
        record.unlink()
    if not record.exists():
        print("building, and testing without a fault, in", copy, flush=True)
        configured = run(["cmake", "--preset", "check", "-DSARKELO_BENCH=OFF"], copy, 100)
        hashes = build(copy) if configured[1] == 0 else None
        failing, usual = test(copy, TESTS, {}) if hashes else ("the build", {})
        if failing:
            sys.exit(f"without a fault, {failing} fails")
        record.write_text(json.dumps([hashes, usual]))
    return json.loads(record.read_text())


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("count", type=int, help="how many faults")
    parser.add_argument("--seed", type=int, default=1, help="which faults (1)")
    parser.add_argument("--build", type=pathlib.Path, help="the folder of the copy, which is kept (build/faults)")
    parser.add_argument("files", nargs="*", help="sources to plant faults in (all)")
    given = parser.parse_args()
    os.nice(10)
    root = pathlib.Path(subprocess.check_output(["git", "rev-parse", "--show-toplevel"], text=True).strip())
    copy = (given.build or root / "build" / "faults").resolve()
    hashes, usual = prepare(root, copy)
    files = given.files or [str(path.relative_to(copy)) for path in sorted(copy.glob("*/*.cpp"))]
    files = [file for file in files if not file.startswith(NOT_PRODUCT)]
    start, planted, caught = time.time(), 0, 0
    for file, number, (first, end, new) in draw(find_functions(copy, files), random.Random(given.seed)):
        if planted == given.count:
            break
        text = (copy / file).read_text()
        lines = text.split("\n")
        old = lines[number]
        lines[number] = old[:first] + new + old[end:]
        (copy / file).write_text("\n".join(lines))
        faulty = build(copy)
        names = [name for name in TESTS if name == "scripts" or faulty and faulty[name] != hashes[name]]
        catcher = test(copy, names, usual)[0] if len(names) > 1 else None
        (copy / file).write_text(text)
        if len(names) > 1:
            planted += 1
            caught += catcher is not None
            print(f"{file}:{number + 1}: " + (f"caught by {catcher}" if catcher else "NOT CAUGHT"))
            print(f"- {old.strip()}\n+ {lines[number].strip()}", flush=True)
    use = resource.getrusage(resource.RUSAGE_CHILDREN)
    print(f"{caught} of {planted} faults caught, with seed {given.seed} (--seed for others), in {time.time() - start:.0f} s,"
          f" {use.ru_utime + use.ru_stime:.0f} s of processor time")
    return planted == 0 or caught < 0.9 * planted


if __name__ == "__main__":
    sys.exit(main())
