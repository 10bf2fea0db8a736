#!/usr/bin/python3
"""Compares aggregates grown in flights with aggregates grown in steps: flights.csv, and the picture of flights.md.

    flights.py SARKELO-GROW FOLDER    grows what is missing into the folder, ten minutes of two cores

Every number of an ensemble is compared by permuting whole aggregates, since the particles of one are not independent. Of
a distribution the distance is that of Kolmogorov and Smirnov between the mean distribution functions of both ensembles.
"""
import concurrent.futures
import csv
import pathlib
import subprocess
import sys

import h5py
import matplotlib
import numpy as np

matplotlib.use("Agg")
import matplotlib.pyplot as plt

CASES = {
    "bias 0": ["growth.bias=0"],
    "bias 0.1 (default)": [],
    "bias 1": ["growth.bias=1"],
    "stickiness 5": ["growth.stickiness=5"],
    "three associated roots": ["growth.association=true", "roots.count=3", "roots.range=30",
                               "roots.distribution=Ring: z axis plane"],
    "source Plane (z)": ["source.type=Plane (z)"],
    "surface Cylinder": ["surface.sample=Cylinder", "surface.scale=[1.5,1.5,1.5]"],
}
LARGE = "300,000 particles"
WALKS = ("steps", "flights")
SIZES = (1000, 5000, 20000)
PERMUTATIONS = 50000
LEVEL = 0.01
COLUMNS = ("setting", "measure", "steps", "steps_error", "flights", "flights_error", "difference", "difference_error", "distance",
           "p", "significant")
FLOWS = np.geomspace(1e-3, 1e3, 400)


def grow(grow_program, path, walk, particles, seed, settings):
    if path.exists():
        return
    words = [word for setting in settings for word in ("--set", setting)]
    subprocess.run(
        [grow_program, "--particles", str(particles), "--seed", str(seed), "--set", f"growth.walk={walk}", *words,
         "-o", str(path), "--force", "--quiet", "--checkpoint", "0"],
        check=True,
    )


def gyration(positions):
    return np.sqrt(((positions - positions.mean(0)) ** 2).sum(1).mean())


def measure(path, sizes, grid):
    """The numbers of an aggregate, and its distribution functions."""
    with h5py.File(path) as file:
        positions, flows = file["particles/position"][:], file["particles/flow"][:]
        parents = file["particles/parent"][:]
        seconds = file.attrs["seconds"]
    children = np.bincount(parents[parents >= 0], minlength=len(parents))
    distances = np.sort(np.linalg.norm(positions, axis=1))
    functions = {
        "sticking radius": np.searchsorted(distances, grid, "right") / len(distances),
        "children": np.array([(children <= k).mean() for k in range(6)]),
        "flow": np.searchsorted(np.sort(flows), FLOWS, "right") / len(flows),
    }
    numbers = {f"gyration, {size:,}": gyration(positions[:size]) for size in sizes}
    return numbers, functions, seconds


def permutations(count, random):
    """Weights that give the difference of two means, for all aggregates in random order."""
    weights = np.repeat([1 / count, -1 / count], count)
    return np.array([random.permutation(weights) for _ in range(PERMUTATIONS)])


def compare(steps, flights, weights):
    """The largest difference of the means of two ensembles, and its p."""
    both = np.vstack([steps, flights])
    found = np.abs(both[: len(steps)].mean(0) - both[len(steps) :].mean(0)).max()
    reached = np.concatenate([np.abs(part @ both).max(1) for part in np.array_split(weights, 50)])
    return found, (1 + (reached >= found * (1 - 1e-12)).sum()) / (1 + len(weights))


def holm(ps):
    """Which of the differences are significant at the level, over all of them."""
    significant = np.zeros(len(ps), bool)
    for rank, k in enumerate(np.argsort(ps)):
        if ps[k] > LEVEL / (len(ps) - rank):
            break
        significant[k] = True
    return significant


def ensembles(grow_program, folder):
    """For every case, the measured aggregates of each walk."""
    plans = {case: (settings, 20000, 32, SIZES) for case, settings in CASES.items()}
    plans[LARGE] = (["growth.bias=0"], 300000, 8, (20000, 100000, 300000))
    tasks = []
    for number, (settings, particles, count, _) in enumerate(plans.values()):
        for walk in WALKS:
            for seed in range(1, count + 1):
                # Seeds of the two walks differ: the same draws would tie the ensembles together.
                tasks.append((grow_program, folder / f"{number}-{walk}-{seed}.sarkelo.h5", walk, particles,
                              seed + 1000 * (walk == "flights"), settings))
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        for done in [pool.submit(grow, *task) for task in tasks]:
            done.result()
    result = {}
    for number, (case, (_, _, count, sizes)) in enumerate(plans.items()):
        grid = np.linspace(0, 200 if case == LARGE else 90, 600)
        result[case] = {
            walk: [measure(folder / f"{number}-{walk}-{seed}.sarkelo.h5", sizes, grid) for seed in range(1, count + 1)]
            for walk in WALKS
        }
    return result


def main():
    grow_program, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    folder.mkdir(parents=True, exist_ok=True)
    random = np.random.default_rng(1)
    measured = ensembles(grow_program, folder)
    rows, ps = [], []
    for case, walks in measured.items():
        weights = permutations(len(walks["steps"]), random)
        for name in walks["steps"][0][0]:
            values = [np.array([[one[0][name]] for one in walks[walk]]) for walk in WALKS]
            _, p = compare(*values, weights)
            means = [value.mean() for value in values]
            errors = [value.std(ddof=1) / np.sqrt(len(value)) for value in values]
            numbers = [means[0], errors[0], means[1], errors[1], means[1] - means[0], np.hypot(*errors)]
            rows.append([case, name, *(f"{number:.2f}" for number in numbers), ""])
            ps.append(p)
        for name in walks["steps"][0][1]:
            distance, p = compare(*[np.array([one[1][name] for one in walks[walk]]) for walk in WALKS], weights)
            rows.append([case, name, *[""] * 6, f"{distance:.4f}"])
            ps.append(p)
    here = pathlib.Path(__file__).parent
    with open(here.parent / "flights.csv", "w", newline="") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(COLUMNS)
        for row, p, significant in zip(rows, ps, holm(np.array(ps))):
            writer.writerow([*row, f"{p:.4f}", "yes" if significant else "no"])
    draw(measured, here / "flights.png")


def draw(measured, path):
    figure, axes = plt.subplots(4, 4, figsize=(13, 12))
    for k, (case, walks) in enumerate(measured.items()):
        column = axes[k // 4 * 2 : k // 4 * 2 + 2, k % 4]
        for walk, colour in zip(WALKS, ("black", "tab:red")):
            numbers = np.array([list(one[0].values()) for one in walks[walk]])
            sizes = [int(name.split(", ")[1].replace(",", "")) for name in walks[walk][0][0]]
            column[0].errorbar(sizes, numbers.mean(0), numbers.std(0, ddof=1), color=colour, label=walk, capsize=3)
            functions = np.array([one[1]["sticking radius"] for one in walks[walk]])
            grid = np.linspace(0, 200 if case == LARGE else 90, 600)
            column[1].fill_between(grid, functions.min(0), functions.max(0), color=colour, alpha=0.2)
            column[1].plot(grid, functions.mean(0), color=colour)
        column[0].set(title=case, xscale="log", yscale="log", xlabel="particles")
        column[1].set(xlabel="distance from the origin")
    for row, label in zip(axes[:, 0], 2 * ("radius of gyration", "share of particles")):
        row.set_ylabel(label)
    axes[0, 0].legend()
    figure.tight_layout()
    figure.savefig(path, dpi=60)


main()
