#!/usr/bin/env python3
"""Shows in a few lines what a replayed analysis left in a folder: the fit, its estimates and the files written."""

import csv
import json
import pathlib
import sys


def show_fit(path):
    fit = json.loads(path.read_text())
    print(f"Fitted by {fit['minimiser'] or 'nothing yet'}: -2 ln[L] = {fit['objective']:.4f} with "
          f"{fit['free_parameters']} free parameters, after {fit['function_calls']} function calls.")


def show_estimates(path):
    with path.open(newline="") as lines:
        free = [row for row in csv.DictReader(lines) if row["free"].lower() not in ("", "0", "no", "false")]
    for row in free:
        print(f"  #{row['number']:>3}  {float(row['value']):12.6g}   {row['name'][:90]}")


def main(folder):
    if (folder / "fit.json").exists():
        show_fit(folder / "fit.json")
    if (folder / "estimates.csv").exists():
        show_estimates(folder / "estimates.csv")
    print(f"Written to {folder}/: " + ", ".join(sorted(file.name for file in folder.iterdir())))


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))
