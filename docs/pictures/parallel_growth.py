#!/usr/bin/python3
"""Draws parallel-growth.png: walks on two threads, and when their particles are added. A sketch, nothing is measured."""
import pathlib

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt

# Number, thread, start and end of a walk, and when its particle is added
WALKS = [(11, 0, 0, 5, 5), (12, 1, 0, 2.6, 5.3), (13, 1, 2.6, 4.4, 5.6), (14, 1, 4.4, 7.4, None), (15, 0, 6, 8.6, 10.8),
         (16, 0, 8.6, 12, 12)]
REPEATED = (14, 1, 7.4, 10.5, 10.5)

figure, axis = plt.subplots(figsize=(8, 2.6))
for number, thread, start, end, added in WALKS + [REPEATED]:
    colour = "tab:red" if (number, start) == (14, 7.4) else "lightgrey"
    axis.barh(-thread, end - start, left=start, height=0.5, color=colour, edgecolor="black")
    axis.text((start + end) / 2, -thread, str(number), ha="center", va="center")
    if added is not None:
        axis.plot([end, added, added], [-thread - 0.25 if thread else -thread - 0.25, -1.6, -1.9], "k--", linewidth=0.8)
        axis.text(added, -2.1, str(number), ha="center", va="center", fontsize=8)
axis.barh(0, 1, left=5, height=0.5, color="white", edgecolor="black")
axis.text(5.5, 0, "add", ha="center", va="center", fontsize=8)
axis.set(yticks=[0, -1, -2.1], xticks=[], xlabel="time", xlim=(-0.2, 12.6), ylim=(-2.5, 0.5))
axis.set_yticklabels(["thread 1", "thread 2", "particle added"])
for side in ("top", "right", "left"):
    axis.spines[side].set_visible(False)
figure.tight_layout()
figure.savefig(pathlib.Path(__file__).parent / "parallel-growth.png", dpi=100)
