#!/usr/bin/python3
"""Makes docs/validation.md and its pictures from the tables in ensemble/validation/tables.

    page.py             both
    page.py --check     ends with 1 where the page is another than it would be made
"""
import pathlib
import string
import sys

import matplotlib
import numpy as np
import pandas as pd

matplotlib.use("Agg")
import matplotlib.pyplot as plt

HERE = pathlib.Path(__file__).resolve().parent
DOCS = HERE.parents[1] / "docs"
STUDIES = {path.stem: pd.read_csv(path) for path in sorted((HERE / "tables").glob("*.csv"))}
MEAN_FIELD = 2.5
WALKERS = {"flights": "default", "far": "far away"}


def with_error(values):
    """Mean and standard error over aggregates, as text for the page."""
    values = np.asarray(values, dtype=float)
    values = values[np.isfinite(values)]
    return f"{values.mean():.3f} ± {values.std(ddof=1) / np.sqrt(len(values)):.3f}" if len(values) > 1 else ""


def slope(rows, name, begin, end):
    """The slope of a quantity's logarithm against that of the number of particles, between two numbers, for each aggregate."""
    return np.log(rows[f"{name}_{end}"] / rows[f"{name}_{begin}"]) / np.log(end / begin)


def dimension(rows, begin, end):
    """The dimension from number against radius of gyration, for each aggregate."""
    return 1 / slope(rows, "gyration", begin, end)


def table(head, lines):
    return "\n".join([f"| {' | '.join(head)} |", "|---" * len(head) + "|", *(f"| {' | '.join(line)} |" for line in lines)])


def groups(name, keys):
    """The rows of each combination of a study, in the order of its values."""
    return list(STUDIES[name].groupby(keys, sort=True))


# Tables ----------------------------------------------------------------------------------------------------------------------


def decades():
    studies = ["steps", "flights", "unending", "far"]
    lines = []
    for begin in (100, 1000, 10_000, 100_000):
        known = [f"gyration_{10 * begin}" in STUDIES[name] for name in studies]
        lines.append([f"{begin:,} to {10 * begin:,}", *(with_error(dimension(STUDIES[name], begin, 10 * begin)) if there else ""
                                                         for name, there in zip(studies, known))])
    return table(["particles", "steps", "flights", "flights, lives unending", "flights, far away"], lines)


def launches(measure):
    """By launch scale and killing scale, with the default, steps, beside them."""
    killing = sorted(STUDIES["launch"]["growth.killing_scale"].unique())
    lines = []
    for launch, rows in groups("launch", "growth.launch_scale"):
        lines.append([f"{launch:g}", measure(STUDIES["steps"]) if launch == 1 else "",
                      *(measure(some) for _, some in rows.groupby("growth.killing_scale"))])
    return table(["launch scale", "within the launch sphere (steps)", *(f"killing scale {scale:g}" for scale in killing)], lines)


def estimators():
    lines = []
    for name, label in WALKERS.items():
        rows = STUDIES[name]
        lines.append([label, with_error(dimension(rows, 10_000, 1_000_000)),
                      with_error(-rows.box_count_slope),
                      *(with_error(slope(rows, "within", begin, 2 * begin)) for begin in (4, 8, 16, 32, 64))])
    return table(["walkers", "gyration, 10,000 to a million", "boxes", *(f"pairs, {r} to {2 * r}" for r in (4, 8, 16, 32, 64))], lines)


def boxes():
    """Local slopes of the box count; its edges are shares of the radius."""
    lines = []
    for name, label in WALKERS.items():
        rows = STUDIES[name]
        slopes = [np.log(rows[f"boxes_{k + 1}"] / rows[f"boxes_{k}"]) / np.log(1.5) for k in range(1, 8)]
        lines.append([label, *(with_error(slopes[k]) for k in range(7))])
    edges = [np.concatenate([STUDIES[name].radius / 2 / 1.5**k for name in WALKERS]).mean() for k in range(1, 9)]
    return table(["walkers", *(f"edges {edges[k]:.0f} to {edges[k + 1]:.0f}" for k in range(7))], lines)


def stickiness():
    lines = []
    for value, rows in groups("stickiness", "growth.stickiness"):
        lines.append([f"{value:g} %", f"{rows.within_4.mean():.1f}",
                      *(with_error(dimension(rows, *span)) for span in ((100, 1000), (1000, 10_000), (10_000, 100_000),
                                                                        (50_000, 300_000)))])
    return table(["stickiness", "others within 4", "100 to 1,000", "1,000 to 10,000", "10,000 to 100,000", "50,000 to 300,000"], lines)


def shifts(name, key, unit, largest):
    lines = []
    for value, rows in groups(name, key):
        lines.append([f"{value:g} {unit}", with_error(rows.radius_of_gyration), with_error(dimension(rows, largest // 10, largest)),
                      with_error(rows.penetration_radial), with_error(rows.within_4),
                      with_error(100 * rows.children_0 / rows.particles)])
    return table([key.split(".")[1], "radius of gyration", f"dimension, {largest // 10:,} to {largest:,}", "penetration",
                  "others within 4", "tips, %"], lines)


def sources():
    lines = []
    for (source, recipe), rows in groups("sources", ["source.type", "recipe"]):
        lines.append([f"{source}, {recipe.removesuffix('.toml')}", with_error(rows.radius_of_gyration), with_error(rows.radius),
                      with_error(rows.penetration_z), with_error(rows.effective_trees)])
    return table(["source, roots", "radius of gyration", "radius", "penetration along z", "trees"], lines)


def cylinders():
    lines = []
    for (source, recipe), rows in groups("cylinder", ["source.type", "recipe"]):
        radius = int(recipe.removesuffix(".toml").split("-")[1])
        lines.append([source, str(radius), with_error(rows.penetration_z), with_error(rows.penetration_z / radius),
                      with_error(rows.within_4)])
    return table(["source", "radius of the cylinder", "penetration along z", "in radii", "others within 4"], lines)


# Pictures --------------------------------------------------------------------------------------------------------------------


def numbers_of(rows):
    return sorted(int(name.split("_")[1]) for name in rows if name.startswith("gyration_") and rows[name].notna().all())


def plot_gyration(axes, rows, label):
    numbers = numbers_of(rows)
    radii = np.array([rows[f"gyration_{n}"] for n in numbers])
    axes.errorbar(numbers, radii.mean(1) / np.array(numbers) ** (1 / MEAN_FIELD), radii.std(1, ddof=1) / np.array(numbers) ** (1 / MEAN_FIELD),
                  fmt="o-", ms=3, capsize=2, label=label)
    axes.set(xscale="log", xlabel="particles", ylabel="radius of gyration / N^(1/2.5)")


def plot_slopes(axes, rows, label):
    numbers = [n for n in numbers_of(rows) if n >= 1000 and f"gyration_{n // 10}" in rows]
    slopes = [dimension(rows, n // 10, n) for n in numbers]
    axes.errorbar(numbers, [s.mean() for s in slopes], [s.std() / np.sqrt(len(s)) for s in slopes], fmt="o-", ms=3, capsize=2,
                  label=label)
    axes.set(xscale="log", xlabel="particles, end of the decade", ylabel="dimension over the decade")


def figure(path, curves):
    picture, (left, right) = plt.subplots(1, 2, figsize=(12, 4.5))
    for label, rows in curves:
        plot_gyration(left, rows, label)
        plot_slopes(right, rows, label)
    right.axhline(MEAN_FIELD, color="grey", lw=0.8, ls="--")
    left.legend(fontsize=8)
    picture.tight_layout()
    picture.savefig(DOCS / "pictures" / path, dpi=90)
    plt.close(picture)


def draw():
    named = {"steps": "steps", "flights": "flights", "unending": "flights, lives unending", "far": "flights, far away"}
    figure("validation-dimension.png", [(label, STUDIES[name]) for name, label in named.items()])
    figure("validation-stickiness.png", [(f"stickiness {value:g} %", rows) for value, rows in groups("stickiness", "growth.stickiness")])


# Page ------------------------------------------------------------------------------------------------------------------------


def page():
    hours = sum(rows.time_seconds.sum() for rows in STUDIES.values()) / 3600
    aggregates = sum(len(rows) for rows in STUDIES.values())
    return string.Template((HERE / "page.md").read_text(encoding="utf-8")).substitute(
        aggregates=f"{aggregates:,}", hours=f"{hours:.1f}", decades=decades(), launches=launches(lambda rows: f"{with_error(dimension(rows, 10_000, 100_000))}; {rows.gyration_100000.mean():.1f}"),
        anisotropy=launches(lambda rows: with_error(rows.cubic_anisotropy)), estimators=estimators(), boxes=boxes(),
        stickiness=stickiness(), bias=shifts("bias", "growth.bias", "%", 100_000),
        rotation=shifts("rotation", "growth.rotation", "°", 50_000), sources=sources(), cylinders=cylinders())


def main():
    made = page()
    path = DOCS / "validation.md"
    if sys.argv[1:] == ["--check"]:
        if path.read_text(encoding="utf-8") != made:
            sys.exit(f"{path} is not what ensemble/validation/page.py makes")
        return
    path.write_text(made, encoding="utf-8")
    draw()


main()
