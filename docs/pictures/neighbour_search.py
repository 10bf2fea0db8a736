#!/usr/bin/python3
"""Makes neighbour-search.png: the clearance map about a small aggregate, in two dimensions, and the free balls of three walkers."""
import pathlib

import matplotlib
import numpy as np

matplotlib.use("Agg")
import matplotlib.pyplot as plt

EDGE = 1.03  # of the finest cubes, in branch lengths
MARGIN = 1.01
SCALES = 3
EXTENT = 20  # of the picture, in the finest cubes from the middle
COLOURS = ("#f2c14e", "#9bc995", "#5b9bd5")
WALKERS = ((-14, 14.5), (13.5, -5), (-12.5, -1))


def grow(count, random):
    """Particles and their parents, by walkers in a plane that stick within a branch length."""
    particles, parents = [np.zeros(2)], [0]
    while len(particles) < count:
        launch = 3 + max(np.linalg.norm(particles, axis=1))
        angle = random.uniform(0, 2 * np.pi)
        walker = launch * np.array([np.cos(angle), np.sin(angle)])
        while np.linalg.norm(walker) < 2 * launch:
            angle = random.uniform(0, 2 * np.pi)
            walker = walker + [np.cos(angle), np.sin(angle)]
            distances = np.linalg.norm(np.array(particles) - walker, axis=1)
            if distances.min() < 1:
                parents.append(int(distances.argmin()))
                particles.append(walker)
                break
    return np.array(particles), parents


def reaches(scale):
    """Squared reaches of a scale's two levels, in its cubes."""
    return (1 if scale == 0 else 5), 9


def unmarked_levels(particles, scale, cube):
    occupied = np.floor(particles / (EDGE * 2**scale))
    gaps = np.maximum(np.abs(occupied - cube) - 1, 0)
    return sum((gaps**2).sum(1).min() >= reach for reach in reaches(scale))


def draw_cube(axes, particles, scale, cube):
    """Draws the coarsest unmarked cubes of an area: this cube, or the finer ones in it."""
    levels = unmarked_levels(particles, scale, cube)
    edge = EDGE * 2**scale
    if levels == 0 and scale > 0:
        for k in range(4):
            draw_cube(axes, particles, scale - 1, 2 * cube + [k % 2, k // 2])
        return
    colour = "white" if levels == 0 else COLOURS[scale]
    axes.add_patch(plt.Rectangle(edge * cube, edge, edge, facecolor=colour, edgecolor="#666666", linewidth=0.5))


def clearance(particles, point):
    found = 0
    for scale in range(SCALES):
        levels = unmarked_levels(particles, scale, np.floor(point / (EDGE * 2**scale)))
        if levels > 0:
            found = max(found, np.sqrt(reaches(scale)[levels - 1]) * EDGE * 2**scale / MARGIN)
    return found


def main():
    particles, parents = grow(60, np.random.default_rng(8))
    figure, axes = plt.subplots(figsize=(7.5, 7))
    coarsest = EXTENT // 2 ** (SCALES - 1)
    for x in range(-coarsest, coarsest):
        for y in range(-coarsest, coarsest):
            draw_cube(axes, particles, SCALES - 1, np.array([x, y]))
    for k, parent in enumerate(parents):
        axes.plot(*zip(particles[k], particles[parent]), color="black", linewidth=1.5)
    axes.plot(*particles.T, ".", color="black", markersize=3)
    for point in map(np.array, WALKERS):
        axes.plot(*point, "o", color="#c00000", markersize=5)
        axes.add_patch(plt.Circle(point, clearance(particles, point) - 1, fill=False, color="#c00000", linewidth=1.5))
    handles = [plt.Rectangle((0, 0), 1, 1, facecolor=colour, edgecolor="#666666") for colour in ("white", *COLOURS)]
    axes.legend(handles, ["marked on all levels: search the lists", *(f"unmarked cube of edge {EDGE * 2**k:.2f} b" for k in range(SCALES))],
                loc="upper center", bbox_to_anchor=(0.5, 0), ncol=2, fontsize=9, frameon=False)
    axes.set(xlim=(-EDGE * EXTENT, EDGE * EXTENT), ylim=(-EDGE * EXTENT, EDGE * EXTENT), aspect="equal")
    axes.axis("off")
    figure.tight_layout()
    figure.savefig(pathlib.Path(__file__).parent / "neighbour-search.png", dpi=100)


main()
