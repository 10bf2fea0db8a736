#!/usr/bin/python3
"""Compares aggregates grown in flights with aggregates grown in steps by their radius of gyration: gyration.csv and
flights.png of the page on flights.

    flights.py SARKELO-GROW FOLDER    grows what is missing into the folder, a quarter of an hour of two cores
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

CASES = {"Sphere": ["growth.bias=0"], "Single axis (+x)": ["growth.bias=0", "source.type=Single axis (+x)"]}
WALKS = ("steps", "flights")
AGGREGATES = 64
SIZES = (1000, 2000, 5000, 10000, 20000)


def grow(grow_program, path, walk, seed, settings):
    if not path.exists():
        words = [word for setting in settings for word in ("--set", setting)]
        subprocess.run([grow_program, "--particles", str(SIZES[-1]), "--seed", str(seed), "--threads", "1", "--set", f"growth.walk={walk}",
                        *words, "-o", str(path), "--force", "--quiet", "--checkpoint", "0"], check=True)
    with h5py.File(path) as file:
        positions = file["particles/position"][:]
    return [np.sqrt(((positions[:size] - positions[:size].mean(0)) ** 2).sum(1).mean()) for size in SIZES]


def main():
    grow_program, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    folder.mkdir(parents=True, exist_ok=True)
    here = pathlib.Path(__file__).parent
    figure, axes = plt.subplots(1, len(CASES), figsize=(9, 3.6))
    rows = []
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        for axis, (number, (case, settings)) in zip(axes, enumerate(CASES.items())):
            means, errors = {}, {}
            for walk, colour in zip(WALKS, ("black", "tab:red")):
                # Every aggregate has a seed of its own.
                first = 1 + AGGREGATES * (2 * number + WALKS.index(walk))
                found = np.array(list(pool.map(
                    lambda seed: grow(grow_program, folder / f"{number}-{walk}-{seed}.sarkelo.h5", walk, seed, settings),
                    range(first, first + AGGREGATES))))
                means[walk], errors[walk] = found.mean(0), found.std(0, ddof=1) / np.sqrt(AGGREGATES)
                axis.errorbar(SIZES, means[walk], found.std(0, ddof=1), color=colour, label=walk, capsize=3)
            axis.set(title=f"source {case}", xscale="log", yscale="log", xlabel="particles", ylabel="radius of gyration")
            for k, size in enumerate(SIZES):
                difference = means["flights"][k] - means["steps"][k]
                error = np.hypot(errors["flights"][k], errors["steps"][k])
                rows.append([case, size, *(f"{value:.3f}" for walk in WALKS for value in (means[walk][k], errors[walk][k])),
                             f"{100 * difference / means['steps'][k]:.2f}", f"{100 * error / means['steps'][k]:.2f}"])
    axes[0].legend()
    figure.tight_layout()
    figure.savefig(here / "flights.png", dpi=80)
    with open(here.parent / "gyration.csv", "w", newline="") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(["source", "particles", "steps", "steps_error", "flights", "flights_error", "difference_percent", "difference_error"])
        writer.writerows(rows)


main()
