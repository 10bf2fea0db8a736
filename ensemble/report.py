#!/usr/bin/python3
"""Makes the table and the report of the runs of a study that have finished.

    report.py STUDY.yaml
"""
import base64
import html
import io
import os
import sys

import matplotlib
import numpy as np
import pandas as pd

import study as studies

matplotlib.use("Agg")
import matplotlib.pyplot as plt

STYLE = """body { font-family: sans-serif; max-width: 70em; margin: 2em auto; padding: 0 1em; line-height: 1.4 }
table { border-collapse: collapse } td, th { padding: 0.2em 0.8em; border-bottom: 1px solid #ccc; text-align: right }
figure { display: inline-block; margin: 0.5em } figure img { width: 16em; background: black } .plot { width: 100% }"""


def tidy(study, rows):
    """One row for each aggregate; the time it took is in columns of its own at the end."""
    lines = []
    for run, row in rows:
        statistics = row["statistics"]
        recipe = run.recipe and os.path.relpath(run.recipe, study.path.parent)
        line = {"run": run.name, "recipe": recipe, **row["parameters"], "program_version": statistics["program_version"]}
        for name in ("particles", "steps", "launches", "radius", "radius_of_gyration"):
            line[name] = statistics[name]
        line |= {f"children_{k}": count for k, count in enumerate(statistics["branch_distribution"])}
        for name in ("box_count", "number_by_radius_of_gyration"):
            for key in ("slope", "standard_error", "points"):
                line[f"{name}_{key}"] = statistics[name][key]
        line |= {f"boxes_{k}": level["count"] for k, level in enumerate(statistics["box_count"]["levels"])}
        line |= {f"gyration_{n}": radius for n, radius in row["gyration"]}
        line |= {f"within_{distance:g}": count for distance, count in row["correlation"]}
        line |= {f"penetration_{name}": depth for name, depth in row["penetration"].items()}
        line |= {name: row[name] for name in ("cubic_anisotropy", "effective_trees")}
        line["time_seconds"] = statistics["seconds"]
        lines.append(line)
    return pd.DataFrame(lines)


def embedded(figure):
    data = io.BytesIO()
    figure.savefig(data, format="png", dpi=110)
    plt.close(figure)
    return f'<img class="plot" src="data:image/png;base64,{base64.b64encode(data.getvalue()).decode()}">'


def mean_and_error(values):
    values = np.asarray(values, dtype=float)
    error = values.std(ddof=1) / np.sqrt(len(values)) if len(values) > 1 else np.nan
    return values.mean(), error


def groups(study, rows):
    """The rows of each combination, by its name."""
    found = {}
    for run, row in rows:
        values = dict(run.settings)
        label = ", ".join(f"{key.split('.')[-1]} {values[key]}" for key in study.grid) or "all"
        if len({run.recipe for run in study.runs}) > 1:
            label = f"{run.recipe.rsplit('/', 1)[-1].removesuffix('.toml') or 'default'}: {label}"
        found.setdefault(label, []).append((run, row))
    return found


def gyration_figure(by_group):
    figure, axes = plt.subplots(figsize=(9, 5))
    for label, rows in by_group.items():
        curves = [np.array(row["gyration"]) for _, row in rows]
        numbers, radii = curves[0][:, 0], np.array([curve[:, 1] for curve in curves])
        mean = radii.mean(0)
        fitted = numbers >= 500
        fit = np.polyfit(np.log(mean[fitted]), np.log(numbers[fitted]), 1) if fitted.sum() > 2 else None
        name = label if fit is None else f"{label}: slope {fit[0]:.3f} from 500 on"
        points = axes.errorbar(mean, numbers, xerr=radii.std(0), fmt="o", ms=3, capsize=2, label=name)
        if fit is not None:
            axes.plot(mean, np.exp(np.polyval(fit, np.log(mean))), color=points[0].get_color())
    axes.set(xscale="log", yscale="log", xlabel="radius of gyration", ylabel="particles")
    axes.legend()
    return embedded(figure)


def dimension_figure(by_group):
    figure, axes = plt.subplots(figsize=(9, 4))
    for name, mark in (("number_by_radius_of_gyration", "o"), ("box_count", "s")):
        sign = -1 if name == "box_count" else 1
        points = [mean_and_error([sign * row["statistics"][name]["slope"] for _, row in rows
                                  if row["statistics"][name]["slope"] is not None] or [np.nan]) for rows in by_group.values()]
        means, errors = np.array(points).T
        axes.errorbar(range(len(points)), means, errors, fmt=mark, capsize=4, label=name.replace("_", " "))
    axes.set_xticks(range(len(by_group)), by_group, rotation=20, ha="right")
    axes.set(ylabel="dimension")
    axes.legend()
    figure.tight_layout()
    return embedded(figure)


def branches_figure(by_group):
    figure, (left, right) = plt.subplots(1, 2, figsize=(11, 4))
    for label, rows in by_group.items():
        shares = np.array([row["statistics"]["branch_distribution"] for _, row in rows], dtype=float)
        shares /= shares.sum(1, keepdims=True)
        left.errorbar(range(6), shares[:, :6].mean(0), shares[:, :6].std(0), fmt="o-", capsize=3, label=label)
        for k, (_, row) in enumerate(rows):
            levels = row["statistics"]["box_count"]["levels"]
            right.plot([level["edge"] for level in levels], [level["count"] for level in levels],
                       color=left.lines[-1].get_color(), lw=0.7)
    left.set(xlabel="children of a particle", ylabel="share of particles", yscale="log")
    right.set(xlabel="edge of a box", ylabel="boxes occupied", xscale="log", yscale="log")
    left.legend()
    figure.tight_layout()
    return embedded(figure)


def summary(by_group):
    lines = ["<table><tr><th>setting<th>aggregates<th>radius of gyration<th>dimension by gyration<th>by boxes</tr>"]
    for label, rows in by_group.items():
        statistics = [row["statistics"] for _, row in rows]
        cells = [html.escape(label), str(len(rows))]
        for values in ([one["radius_of_gyration"] for one in statistics],
                       [one["number_by_radius_of_gyration"]["slope"] for one in statistics],
                       [None if one["box_count"]["slope"] is None else -one["box_count"]["slope"] for one in statistics]):
            known = [value for value in values if value is not None]
            cells.append("%.3f ± %.3f" % mean_and_error(known) if known else "")
        lines.append("<tr><td>" + "<td>".join(cells) + "</tr>")
    return "\n".join([*lines, "</table>"])


def pictures(study, by_group):
    figures = []
    for label, rows in by_group.items():
        path = study.output / "pictures" / f"{rows[0][0].name}.png"
        if path.exists():
            data = base64.b64encode(path.read_bytes()).decode()
            figures.append(f'<figure><img src="data:image/png;base64,{data}"><figcaption>{html.escape(label)}</figcaption></figure>')
    return "<h2>One of each</h2>" + "".join(figures) if figures else ""


def main():
    study = studies.read(sys.argv[1], check=False)
    rows = studies.finished_rows(study)
    if not rows:
        sys.exit(f"{study.path}: nothing has finished yet")
    table = tidy(study, rows)
    table.to_csv(study.output / "table.csv", index=False)
    table.to_hdf(study.output / "table.h5", key="aggregates", format="table", mode="w")
    by_group = groups(study, rows)
    parts = [
        f"<!doctype html><meta charset='utf-8'><title>{html.escape(study.name)}</title><style>{STYLE}</style>",
        f"<h1>{html.escape(study.name)}</h1>",
        f"<p>{len(rows)} of {len(study.runs)} aggregates of {study.particles:,} particles each, sarkelo {table['program_version'][0]}."
        " Bars of means are standard errors over aggregates, those of points standard deviations.</p>",
        summary(by_group),
        "<h2>Number against radius of gyration</h2>", gyration_figure(by_group),
        "<h2>Dimension</h2>", dimension_figure(by_group),
        "<h2>Branches and boxes</h2>", branches_figure(by_group),
        pictures(study, by_group),
    ]
    (study.output / "report.html").write_text("\n".join(parts), encoding="utf-8")


main()
