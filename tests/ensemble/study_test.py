#!/usr/bin/python3
"""study_test.py SARKELO-GROW: bad studies are refused in a line that says where; what a run is called follows from what it
grows; a report is made of what has finished."""
import math
import os
import pathlib
import subprocess
import sys
import tempfile

import numpy as np

os.environ["SARKELO_GROW"] = sys.argv[1]
ensemble = pathlib.Path(__file__).resolve().parents[2] / "ensemble"
sys.path.insert(0, str(ensemble))
import measures
import study as studies

temporary = tempfile.TemporaryDirectory()
folder = pathlib.Path(temporary.name)
(folder / "broken.toml").write_text("[growth\n")
(folder / "ring.toml").write_text('[roots]\ndistribution = "Ring: x axis plane"\ncount = 3\n')
path = folder / "s.yaml"


def read(text):
    path.write_text(text)
    return studies.read(path)


def fault(text):
    try:
        read(text)
    except studies.Fault as found:
        return str(found).replace(f"{folder}/", "")
    return ""


ROWS = [
    ("particles: 100\nseeds: [3, 1]\nrecipes: [ring.toml]\ngrid:\n  growth.bias: [0, 1]\n", ""),
    ("", "s.yaml: not a valid study: keys and values are expected"),
    ("particles: [100", "s.yaml:1: not a valid study: expected ',' or ']', but got '<stream end>'"),
    ("seeds: 3", "s.yaml:1: particles: a whole number above 0 is expected"),
    ("particles: 1.5", "s.yaml:1: particles is 1.5, which has the wrong type"),
    ("\nparticle: 10", "s.yaml:2: unknown key particle; known ones are " + ", ".join(studies.KEYS)),
    ("particles: 10\nseeds: [1, 1]", "s.yaml:2: seeds: one of them is there twice"),
    ("particles: 10\ngrid: {growth.bias: 1}", "s.yaml:2: grid.growth.bias: a list of values is expected"),
    ("particles: 10\ngrid: {growth.seed: [1]}", "s.yaml:2: growth.seed: the study's own key sets it"),
    ("particles: 10\nsettings: {growth.bias: 1}\ngrid:\n  growth.bias: [0]", "s.yaml:4: growth.bias is in the settings as well"),
    ("particles: 10\ngrid:\n  growth.bias: [1, 1]", "s.yaml:2: two combinations are the same"),
    ("particles: 10\ngrid:\n\n  growth.bais: [1]",
     "s.yaml:4: --set growth.bais=1: unknown key growth.bais; did you mean growth.bias?"),
    ("particles: 10\nsettings: {growth.walk: flights}\ngrid:\n  growth.rotation: [0, 1]",
     's.yaml:4: --set growth.rotation=1: growth.rotation is not 0, and flights cannot be turned; growth.walk "steps" can'),
    ("particles: 10\nrecipes: [none.toml]", "s.yaml:2: none.toml: no such file"),
    ("particles: 10\nrecipes: [broken.toml]",
     "s.yaml:2: broken.toml:1: not a valid recipe: Error while parsing table header: expected ']', saw '\\n'"),
]
for text, expected in ROWS:
    assert fault(text) == expected, f"{text}\n{fault(text)}"
assert "s.yaml:3: there: 3200000.0 GB are needed" in fault("particles: 1000000000\nseeds: 100000\noutput: there\nkeep: true")
os.environ["SARKELO_GROW"] = "/none"
assert fault("particles: 10") == "/none: No such file or directory; ./run builds it"
os.environ["SARKELO_GROW"] = sys.argv[1]

# Shapes, once more without arrays
random = np.random.default_rng(1)
array = random.normal(0, 20, (150, 3))
points = array.tolist()
parents = [-1, -1] + [int(random.integers(k)) for k in range(2, 150)]
pairs = [(max(i, j), math.dist(points[i], points[j])) for i in range(150) for j in range(150)]
gyration = [(n, math.sqrt(sum(d**2 for last, d in pairs if last < n) / 2) / n) for n in (100, 150)]
assert np.allclose(measures.gyration(array), gyration, rtol=1e-9)
correlation = [(2**k, sum(d <= 2**k for _, d in pairs) / 150 - 1) for k in range(1, 11)]
assert np.allclose(measures.correlation(array), correlation, rtol=1e-9)
for name, along in (("radial", lambda p: math.hypot(*p)), ("z", lambda p: p[2])):
    depths = [max(0, max(map(along, points[:k])) - along(points[k])) for k in range(76, 150)]
    assert math.isclose(measures.penetration(array)[name], sum(depths) / len(depths))
quartics = [sum(x**4 for x in p) / math.hypot(*p) ** 4 for p in points]
assert math.isclose(measures.cubic_anisotropy(array), sum(quartics) / 150 - 0.6)
trees = [0, 1]
for parent in parents[2:]:
    trees.append(trees[parent])
assert math.isclose(measures.effective_trees(np.array(parents)), 150**2 / (trees.count(0) ** 2 + trees.count(1) ** 2))

# A study that gets more seeds and values keeps the runs that it had, and its report is one of those that are there.
before = {run.name for run in read("particles: 300\nseeds: [2]\nsettings: {growth.walk: flights}\ngrid:\n  growth.bias: [0]\n").runs}
study = read("particles: 300\nsettings: {growth.walk: flights}\nseeds: 3\ngrid:\n  growth.bias: [1, 0]\n")
assert len(study.runs) == 6 and before < {run.name for run in study.runs}
report = [sys.executable, str(ensemble / "report.py"), str(path)]
nothing = subprocess.run(report, capture_output=True, text=True)
assert nothing.returncode == 1 and "nothing has finished yet" in nothing.stderr
for run in study.runs[:4]:
    subprocess.run([sys.executable, str(ensemble / "grow.py"), str(path), run.name], check=True)
subprocess.run(report, check=True)
assert not list((study.output / "checkpoints").iterdir()) and not list((study.output / "aggregates").iterdir())
text = (study.output / "report.html").read_text()
assert "4 of 6 aggregates" in text and "<script" not in text and "http" not in text
lines = (study.output / "table.csv").read_text().splitlines()
assert len(lines) == 5 and lines[0].endswith(",time_seconds") and "growth.bias" in lines[0] and ",flights," in lines[1]
