"""Loaded when CUTLIST is first used: says how to cut the parts of a frame from bars of one length.

The parts stand in cut_list.csv beside this script. While a script is loaded, its folder is the working directory; a
command that runs later cannot rely on that, so the path is made from the script's own.
"""

import csv
import pathlib

import kest

BAR_LENGTH = 6000
SAW_KERF = 4
PARTS = pathlib.Path(__file__).with_name("cut_list.csv")


def read_parts(path):
    """Every part of the list as (length, name), as often as it is needed."""
    with open(path, encoding="utf-8", newline="") as file:
        for row in csv.DictReader(file):
            yield from [(int(row["length"]), row["name"])] * int(row["count"])


def nested(parts):
    """Puts the longest part first into the first bar that still has room for it."""
    bars = []
    for length, name in sorted(parts, reverse=True):
        if length > BAR_LENGTH:
            raise ValueError(f"{name}: {length} mm is longer than a bar")
        for bar in bars:
            if bar["rest"] >= length + SAW_KERF:
                break
        else:
            bar = {"rest": BAR_LENGTH + SAW_KERF, "parts": []}
            bars.append(bar)
        bar["rest"] -= length + SAW_KERF
        bar["parts"].append(f"{name} {length}")
    return bars


def print_cut_list():
    for number, bar in enumerate(nested(read_parts(PARTS)), start=1):
        kest.print(f"bar {number}: {', '.join(bar['parts'])}; rest {max(bar['rest'], 0)} mm\n")


kest.register_command("CUTLIST", print_cut_list)
