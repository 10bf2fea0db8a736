"""Reads and checks the file of a study, and lists its runs.

A study is a YAML file:

    name: bias                      # of the report; the file's name if missing
    output: results                 # a folder, beside the study; NAME-results if missing
    particles: 20000
    seeds: 8                        # the seeds 1 to 8, or a list of them
    recipes: [ring.toml]            # beside the study; the default aggregate if missing
    settings: {growth.walk: flights}
    grid:                           # every combination is grown with every seed
      growth.bias: [0, 0.5, 1]
    keep: true                      # the aggregate files; false if missing
    pictures: true                  # one of each combination, in the report; false if missing

A run's name is made of what it grows. So a study that is changed goes on with what has been grown, and grows what is new.
"""
import hashlib
import itertools
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
from dataclasses import dataclass, field

import yaml

# What a kept aggregate takes on a disk, in bytes a particle; a checkpoint takes as much while it grows.
BYTES_PER_PARTICLE = 32
KEYS = {"name": str, "output": str, "particles": int, "seeds": (int, list), "recipes": list, "settings": dict, "grid": dict,
        "keep": bool, "pictures": bool}


class Fault(Exception):
    """A fault of a study, in one line with its place."""


@dataclass(frozen=True)
class Run:
    name: str
    recipe: str  # its path, "" for the default aggregate
    settings: tuple  # (key, value), ...
    seed: int
    particles: int

    def arguments(self):
        """The command line arguments for sarkelo-grow."""
        words = [self.recipe] if self.recipe else []
        for key, value in self.settings:
            words += ["--set", f"{key}={as_toml(value)}"]
        return words + ["--seed", str(self.seed), "--particles", str(self.particles)]

    def flies(self):
        return ("growth.walk", "flights") in self.settings


@dataclass
class Study:
    path: pathlib.Path
    name: str
    output: pathlib.Path
    particles: int
    seeds: list
    grid: dict
    keep: bool
    pictures: bool
    runs: list = field(default_factory=list)


def as_toml(value):
    """A YAML value as TOML text. Texts have no quotes: sarkelo-grow accepts them so."""
    return value if isinstance(value, str) else json.dumps(value)


def grow_program():
    here = pathlib.Path(__file__).resolve().parent
    return os.environ.get("SARKELO_GROW", str(here.parent / "build" / "release" / "sarkelo-grow"))


def read(path, check=True):
    """Returns the study in a file. Raises a Fault if it cannot be grown; `check` lets sarkelo-grow test every combination."""
    path = pathlib.Path(path).resolve()
    try:
        with open(path, encoding="utf-8") as file:
            document = yaml.compose(file)
        content = yaml.safe_load(path.read_text(encoding="utf-8"))
    except OSError as error:
        raise Fault(f"{path}: {error.strerror}") from error
    except (yaml.YAMLError, UnicodeDecodeError) as error:
        mark = getattr(error, "problem_mark", None)
        where = f"{path}:{mark.line + 1}" if mark else str(path)
        raise Fault(f"{where}: not a valid study: {getattr(error, 'problem', None) or error}") from error
    if not isinstance(content, dict):
        raise Fault(f"{path}: not a valid study: keys and values are expected")
    lines = find_lines(document)

    def fault(key, text):
        return Fault(f"{path}:{lines.get(key, 1)}: {text}")

    for key, value in content.items():
        if key not in KEYS:
            raise fault((key,), f"unknown key {key}; known ones are {', '.join(KEYS)}")
        if not isinstance(value, KEYS[key]) or (isinstance(value, bool) and KEYS[key] is not bool):
            raise fault((key,), f"{key} is {value!r}, which has the wrong type")
    particles = content.get("particles", 0)
    if particles < 1:
        raise fault(("particles",), "particles: a whole number above 0 is expected")
    seeds = content.get("seeds", 1)
    if isinstance(seeds, int):
        seeds = range(1, seeds + 1)
    if not seeds or not all(isinstance(seed, int) and 0 <= seed < 2**31 for seed in seeds):
        raise fault(("seeds",), "seeds: how many, or a list of whole numbers from 0 on")
    if len(set(seeds)) < len(seeds):
        raise fault(("seeds",), "seeds: one of them is there twice")
    grid = content.get("grid", {})
    for key, values in grid.items():
        if not isinstance(values, list) or not values:
            raise fault(("grid", key), f"grid.{key}: a list of values is expected")
        if key in content.get("settings", {}):
            raise fault(("grid", key), f"{key} is in the settings as well")
    for key in [*grid, *content.get("settings", {})]:
        if key in ("growth.seed", "stop.particles"):
            raise fault(("grid" if key in grid else "settings", key), f"{key}: the study's own key sets it")
    recipes = [str(path.parent / name) for name in content.get("recipes", [])] or [""]
    name = content.get("name", path.stem)
    output = path.parent / content.get("output", f"{name}-results")
    study = Study(path, name, output, particles, list(seeds), grid, content.get("keep", False), content.get("pictures", False))
    for recipe in recipes:
        for values in itertools.product(*grid.values()):
            settings = tuple(content.get("settings", {}).items()) + tuple(zip(grid, values))
            settings = tuple((key, tuple(value) if isinstance(value, list) else value) for key, value in settings)
            if check:
                ask_program(recipe, settings, seeds[0], lambda key: fault(key, "").args[0])
            text = recipe and pathlib.Path(recipe).read_text(encoding="utf-8")
            digest = hashlib.sha256(json.dumps([text, sorted(settings), particles]).encode()).hexdigest()[:10]
            study.runs += [Run(f"{digest}-{seed}", recipe, settings, seed, particles) for seed in seeds]
    if len({run.name for run in study.runs}) < len(study.runs):
        raise fault(("grid",), "two combinations are the same")
    if check:
        check_disk(study, fault)
    return study


def find_lines(document):
    """The line number of each key and of each key inside it, by (key,) and (key, inner key)."""
    lines = {}
    for key, value in document.value if isinstance(document, yaml.MappingNode) else []:
        lines[(key.value,)] = key.start_mark.line + 1
        for inner, _ in value.value if isinstance(value, yaml.MappingNode) else []:
            lines[(key.value, inner.value)] = inner.start_mark.line + 1
    return lines


def ask_program(recipe, settings, seed, where):
    """Lets sarkelo-grow take one step of a combination, to find out what is wrong with it."""
    if recipe and not pathlib.Path(recipe).is_file():
        raise Fault(f"{where(('recipes',))}{recipe}: no such file")
    with tempfile.TemporaryDirectory() as folder:
        run = Run("", recipe, settings, seed, 2**31 - 1)
        words = [grow_program(), *run.arguments(), "--steps", "1", "--quiet", "-o", f"{folder}/a.sarkelo.h5"]
        try:
            done = subprocess.run(words, capture_output=True, text=True)
        except OSError as error:
            raise Fault(f"{grow_program()}: {error.strerror}; ./run builds it") from error
    if done.returncode != 0:
        named = sorted((key for key, _ in settings if key in done.stderr), key=done.stderr.find)
        groups = [(group, key) for key in named for group in ("grid", "settings")]
        rest = where(("recipes",) if recipe else ("grid",))
        line = next((place for place in map(where, groups) if ":1: " not in place), rest)
        raise Fault(line + done.stderr.strip().removeprefix("sarkelo-grow: "))


def check_disk(study, fault):
    study.output.mkdir(parents=True, exist_ok=True)
    missing = sum(not row_path(study, run).exists() for run in study.runs)
    kept = missing if study.keep else min(missing, os.cpu_count() or 1)
    needed = BYTES_PER_PARTICLE * study.particles * kept
    free = shutil.disk_usage(study.output).free
    if needed > free:
        raise fault(("output",), f"{study.output}: {needed / 1e9:.1f} GB are needed, and {free / 1e9:.1f} GB are free")


def row_path(study, run):
    return study.output / "rows" / f"{run.name}.json"


def aggregate_path(study, run):
    return study.output / "aggregates" / f"{run.name}.sarkelo.h5"


def finished_rows(study):
    """The runs of the study that have finished, with their rows."""
    return [(run, json.loads(row_path(study, run).read_text())) for run in study.runs if row_path(study, run).exists()]
