#!/usr/bin/env python3
"""Measures the objective beside two yardsticks and prints one table: ours, a plain program, a rival, ratios.

    bench/run_yardsticks.py BUILD [--yardsticks FOLDER] [--work FOLDER] [--sets a b c] [--rounds 5]

BUILD is the build folder with bench/bench_yardstick. FOLDER holds the yardsticks (its README tells what they are): the
plain program is compiled, the data sets are made, and the rival is run where R and TMB are installed; what is missing is
left out of the table. Without FOLDER our own times are printed, on data sets that an earlier run has left in the work
folder.

One round runs all programs one after the other; the table has the middle of the rounds, in CPU time of the process, so
that other work on the machine disturbs little. Where several threads help, wall time tells more: --wall.
"""

import argparse
import json
import os
import shutil
import statistics
import subprocess
import sys

EVALUATIONS = {"a": 100, "b": 100, "c": 15}
LAST_F = {"a": 31380.235489467887, "b": 32380.273827573834, "c": 33796.994218630403}


def run(command):
    """What a program prints as lines "key value"."""
    done = subprocess.run(command, capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit("%s\nfails:\n%s%s" % (" ".join(command), done.stdout[-2000:], done.stderr[-2000:]))
    values = {}
    for line in done.stdout.splitlines():
        key, _, rest = line.partition(" ")
        values[key] = rest.split()
    return values


def prepare(yardsticks, work):
    """Builds the plain program and the data in `work`."""
    literal = os.path.join(yardsticks, "literal")
    plain = os.path.join(work, "literal")
    subprocess.run(["g++", "-std=c++20", "-O2", "-ffp-contract=off", "-o", plain,
                    os.path.join(literal, "literal.cpp")], check=True)
    if not os.path.exists(os.path.join(work, "cases.json")):
        subprocess.run([sys.executable, os.path.join(literal, "big.py"), work, "--only", "a", "b", "c", "d"], check=True)
    return plain


def has_rival():
    return shutil.which("Rscript") is not None and subprocess.run(
        ["Rscript", "-e", "library(TMB)"], capture_output=True).returncode == 0


class Measurement:
    """One data set: seconds of each figure, round for round."""

    def __init__(self, name, case, args, plain):
        self.name, self.args, self.plain = name, args, plain
        files = [os.path.join(args.work, case["data"]), os.path.join(args.work, case["alg"])]
        self.command = files + case["args"]
        self.seconds = {}

    def note(self, figure, who, seconds):
        self.seconds.setdefault((figure, who), []).append(seconds)

    def round(self):
        k = EVALUATIONS[self.name]
        clock = "" if self.args.wall else "cpu_"
        ours = run([self.args.ours] + self.command + ["--evaluate", str(k)])
        if float(ours["last_F"][0]) != LAST_F[self.name]:
            sys.exit("%s: another objective: %s" % (self.name, ours["last_F"][0]))
        self.note("evaluation", "ours", float(ours["evaluate_%sseconds" % clock][0]) / k)
        fit = run([self.args.ours] + self.command + ["--simplex"])
        self.note("simplex", "ours", float(fit["simplex_%sseconds" % clock][0]))
        if self.plain:
            theirs = run([self.plain] + self.command + ["--evaluate", str(k)])
            self.note("evaluation", "plain", float(theirs["%sns_per_evaluation" % clock][0]) * 1e-9)
            if self.args.fits:
                theirs = run([self.plain] + self.command + ["--simplex"])
                if theirs["simplex_F"] != fit["simplex_F"] or theirs["simplex_calls"] != fit["simplex_calls"]:
                    sys.exit("%s: another fit: %s and %s" % (self.name, fit, theirs))
                self.note("simplex", "plain", float(theirs["simplex_%sseconds" % clock][0]))
        if self.args.rival:
            rival = run(["Rscript", os.path.join(self.args.yardsticks, "tmb", "fit.R")] + self.command +
                        ["--build", self.args.work, "--framework", "TMBad", "--no-nelder-mead"])
            ns = rival["ns_per_objective"]
            self.note("evaluation", "rival", float(ns[0 if self.args.wall else 2]) * 1e-9)
            self.note("simplex", "rival", float(rival["tape_seconds"][0]) + float(rival["nlminb_seconds"][0]) +
                      float(rival["sdreport_seconds"][0]))

    def rows(self):
        for figure in ("evaluation", "simplex"):
            middle = {who: statistics.median(self.seconds[figure, who])
                      for who in ("ours", "plain", "rival") if (figure, who) in self.seconds}
            row = "%-4s%-12s" % (self.name, figure)
            for who in ("ours", "plain", "rival"):
                row += "%12.3f" % (middle[who] * 1e3) if who in middle else "%12s" % "-"
            for who in ("plain", "rival"):
                row += "%12.2f" % (middle[who] / middle["ours"]) if who in middle else "%12s" % "-"
            yield row


def main():
    p = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    p.add_argument("build")
    p.add_argument("--yardsticks")
    p.add_argument("--work", default="yardsticks")
    p.add_argument("--sets", nargs="*", default=list("abc"), choices=list("abc"))
    p.add_argument("--rounds", type=int, default=5)
    p.add_argument("--fits", action="store_true", help="the plain program fits as well, which takes a minute a round")
    p.add_argument("--wall", action="store_true", help="wall times")
    args = p.parse_args()
    args.ours = os.path.join(args.build, "bench", "bench_yardstick")
    os.makedirs(args.work, exist_ok=True)
    plain = prepare(args.yardsticks, args.work) if args.yardsticks else None
    args.rival = bool(args.yardsticks) and has_rival()
    cases = os.path.join(args.work, "cases.json")
    if not os.path.exists(cases):
        sys.exit("no data sets in %s: run once with --yardsticks" % args.work)
    with open(cases) as f:
        case = json.load(f)
    sets = [Measurement(name, case[name], args, plain) for name in args.sets]
    for _ in range(args.rounds):
        for measurement in sets:
            measurement.round()
    print("ms, middle of %d; ratios: times as long as ours" % args.rounds)
    print("%-4s%-12s%12s%12s%12s%12s%12s" % ("set", "", "ours", "plain", "rival", "plain/ours", "rival/ours"))
    for measurement in sets:
        for row in measurement.rows():
            print(row)


if __name__ == "__main__":
    main()
