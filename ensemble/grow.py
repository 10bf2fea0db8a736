#!/usr/bin/python3
"""Grows one aggregate of a study, or continues it, and writes its row: every parameter, every statistic, and what
ensemble/measures.py finds of its shape.

    grow.py STUDY.yaml RUN [THREADS]
"""
import json
import os
import pathlib
import signal
import subprocess
import sys

import h5py
import numpy as np

import measures
import study as studies

CHECKPOINT_MINUTES = 5


def grow(words):
    """Runs sarkelo-grow, and passes on the signals that end a job, at which it writes a checkpoint. Exits if it fails."""
    child = subprocess.Popen(words)
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        signal.signal(number, lambda number, frame: child.send_signal(number))
    status = child.wait()
    if status != 0:
        sys.exit(status if status > 0 else 128 - status)


def parameters(file):
    """The value of each parameter, by "group.key"; the name of a value that has one."""
    found = {}
    for group, holder in file["parameters"].items():
        values = dict(holder.attrs)
        for key, value in values.items():
            if key.endswith(("_unit", "_name")):
                continue
            name = values.get(f"{key}_name")
            found[f"{group}.{key}"] = value.item() if name is None else np.bytes_(name).decode()
    return found


def main():
    study = studies.read(sys.argv[1], check=False)
    run = next(run for run in study.runs if run.name == sys.argv[2])
    row, aggregate = studies.row_path(study, run), studies.aggregate_path(study, run)
    if row.exists():
        return
    checkpoint = study.output / "checkpoints" / f"{run.name}.sarkelo.h5"
    statistics = study.output / "checkpoints" / f"{run.name}.json"
    for path in (row, aggregate, checkpoint):
        path.parent.mkdir(parents=True, exist_ok=True)
    program = studies.grow_program()
    grow([program, *run.arguments(), "-o", str(aggregate), "--checkpoint-file", str(checkpoint), "--checkpoint",
          str(CHECKPOINT_MINUTES), "--threads", sys.argv[3] if len(sys.argv) > 3 else "1", "--continue", "--force", "--quiet", "--statistics", str(statistics)])
    if study.pictures and run.seed == study.seeds[0]:
        picture = study.output / "pictures" / f"{run.name}.png"
        picture.parent.mkdir(exist_ok=True)
        view = pathlib.Path(program).parent / "sarkelo-view"
        subprocess.run([view, aggregate, "--picture", picture, "--size", "400x400", "--fit", "--force"], check=True)
    with h5py.File(aggregate) as file:
        positions = file["particles/position"][:]
        content = {"parameters": parameters(file), "statistics": json.loads(statistics.read_text()),
                   "gyration": measures.gyration(positions), "correlation": measures.correlation(positions),
                   "penetration": measures.penetration(positions),
                   "cubic_anisotropy": measures.cubic_anisotropy(positions),
                   "effective_trees": measures.effective_trees(file["particles/parent"][:])}
    unfinished = row.with_suffix(".new")
    unfinished.write_text(json.dumps(content))
    os.replace(unfinished, row)
    statistics.unlink()
    checkpoint.unlink(missing_ok=True)
    if not study.keep:
        aggregate.unlink()


main()
