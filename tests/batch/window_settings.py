#!/usr/bin/python3
"""Prints a recipe as the settings that grow_in_window.sh makes.

    window_settings.py RECIPE.toml
"""
import sys
import tomllib

# Each entry of the menu of root distributions places what the entry before it is called.
DISTRIBUTIONS = [
    "Origin",
    "Spherical",
    "Random: x axis plane",
    "Random: y axis plane",
    "Random: z axis plane",
    "Ring: x axis plane",
    "Ring: y axis plane",
    "Ring: z axis plane",
]
MENU_ENTRIES = dict(zip(DISTRIBUTIONS, DISTRIBUTIONS[1:]))


def numbers(values):
    return " ".join(str(value) for value in values)


with open(sys.argv[1], "rb") as file:
    recipe = tomllib.load(file)
growth = recipe.get("growth", {})
roots = recipe.get("roots", {})
surface = recipe.get("surface", {})
drawing = recipe.get("drawing", {})

settings = {
    "seed": growth.get("seed"),
    "bias": growth.get("bias"),
    "branch length": growth.get("branch_length"),
    "stickiness": growth.get("stickiness"),
    "rotation": growth.get("rotation"),
    "intersection range": growth.get("intersection_range"),
    "association": "on" if growth.get("association") else None,
    "roots": roots.get("count"),
    "root range": roots.get("range"),
    "root distribution": MENU_ENTRIES.get(roots.get("distribution")),
    "seed file": roots.get("file"),
    "source": recipe.get("source", {}).get("type"),
    "surface": surface.get("sample"),
}
if {"scale", "shift", "rotate"} & surface.keys():
    settings["transform"] = numbers(
        surface.get("scale", [1, 1, 1]) + surface.get("shift", [0, 0, 0]) + surface.get("rotate", [0, 0, 0])
    )
if "thickness_tip" in drawing:
    settings["thickness"] = numbers([drawing["thickness_tip"], drawing["thickness_trunk"]])
for name, value in settings.items():
    if value is not None:
        print(f"{name}: {value}")
