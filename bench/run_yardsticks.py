#!/usr/bin/env python3
"""Measures this program beside others and prints one table: ours, a plain program, a rival, an earlier build, ratios.

    bench/run_yardsticks.py BUILD [--yardsticks FOLDER] [--today BUILD] [--work FOLDER] [--sets a b c] [--rounds 5]

BUILD is the build folder, of a configuration with the benchmarks. FOLDER holds the yardsticks (its README tells what they
are): the plain program is compiled, the data sets are made, and the rival is run where R and TMB are installed. The other
BUILD is that of an earlier state of this program, made with the same preset in a folder of its own. What is not given or
not there is left out of the table; without FOLDER the data sets are those that an earlier run has left in the work folder.

One round runs all programs one after the other; the table has the middle of the rounds. All is wall time, but the
evaluations on one core beside the yardsticks: there ours may use one core only, and the CPU time of all three is taken.
Files that a benchmark writes stand in memory where the machine has a place for that (/dev/shm), since a disk takes its time
to forget those of the run before.
"""

import argparse
import json
import os
import re
import shutil
import statistics
import subprocess
import sys

EVALUATIONS = {"a": 100, "b": 100, "c": 15}
LAST_F = {"a": 31380.235489467887, "b": 32380.273827573834, "c": 33796.994218630403}
WHO = ("ours", "plain", "rival", "today")
IN_MEMORY = {"TMPDIR": "/dev/shm"} if os.path.isdir("/dev/shm") else {}
HERE = os.path.dirname(os.path.abspath(__file__))


def text_of(command, on_one_core=False):
    """What a program prints."""
    limit = (lambda: os.sched_setaffinity(0, {min(os.sched_getaffinity(0))})) if on_one_core else None
    done = subprocess.run(command, capture_output=True, text=True, preexec_fn=limit, env=dict(os.environ, **IN_MEMORY))
    if done.returncode != 0:
        sys.exit("%s\nfails:\n%s%s" % (" ".join(command), done.stdout[-2000:], done.stderr[-2000:]))
    return done.stdout


def values_of(command, on_one_core=False):
    """What a program prints as lines "key value"."""
    values = {}
    for line in text_of(command, on_one_core).splitlines():
        key, _, rest = line.partition(" ")
        values[key] = rest.split()
    return values


def prepare(yardsticks, work):
    """Builds the plain program and the data in `work`, if they are not there."""
    literal = os.path.join(yardsticks, "literal")
    plain, source = os.path.join(work, "literal"), os.path.join(literal, "literal.cpp")
    if not os.path.exists(plain) or os.path.getmtime(plain) < os.path.getmtime(source):
        subprocess.run(["g++", "-std=c++20", "-O2", "-ffp-contract=off", "-o", plain, source], check=True)
    if not os.path.exists(os.path.join(work, "cases.json")):
        subprocess.run([sys.executable, os.path.join(literal, "big.py"), work, "--only", "a", "b", "c", "d"], check=True)
    return plain


def has_rival():
    return shutil.which("Rscript") is not None and subprocess.run(
        ["Rscript", "-e", "library(TMB)"], capture_output=True).returncode == 0


class Table:
    """Seconds of each measure, by whom, round for round."""

    def __init__(self):
        self.seconds = {}

    def note(self, measure, who, seconds):
        self.seconds.setdefault(measure, {}).setdefault(who, []).append(seconds)

    def show(self, rounds):
        print("ms, middle of %d; ratios: times as long as ours" % rounds)
        print("%-46s" % "" + "".join("%12s" % who for who in WHO) + "".join("%12s" % (who + "/ours") for who in WHO[1:]))
        for measure, by in self.seconds.items():
            middle = {who: statistics.median(seconds) for who, seconds in by.items()}
            row = "%-46s" % measure
            for who in WHO:
                row += "%12.3f" % (middle[who] * 1e3) if who in middle else "%12s" % "-"
            for who in WHO[1:]:
                row += "%12.2f" % (middle[who] / middle["ours"]) if who in middle and "ours" in middle else "%12s" % "-"
            print(row)


class DataSet:
    """The objective and a simplex fit of one of the yardsticks' data sets."""

    def __init__(self, name, case, args):
        self.name, self.args = name, args
        self.command = [os.path.join(args.work, case["data"]), os.path.join(args.work, case["alg"])] + case["args"]

    def round(self, table):
        self.ours(table)
        if self.args.plain:
            self.plain(table)
        if self.args.rival:
            self.rival(table)

    def note(self, table, who, wall, cpu):
        table.note(self.name + ": one evaluation", who, wall)
        table.note(self.name + ": one evaluation, one core", who, cpu)

    def note_fit(self, table, who, seconds):
        table.note(self.name + ": simplex fit", who, seconds)

    def ours(self, table):
        k = EVALUATIONS[self.name]
        command = [self.args.ours] + self.command
        all_cores, one_core = (values_of(command + ["--evaluate", str(k)], limited) for limited in (False, True))
        for values in (all_cores, one_core):
            if float(values["last_F"][0]) != LAST_F[self.name]:
                sys.exit("%s: another objective: %s" % (self.name, values["last_F"][0]))
        self.note(table, "ours", float(all_cores["evaluate_seconds"][0]) / k,
                  float(one_core["evaluate_cpu_seconds"][0]) / k)
        self.fit = values_of(command + ["--simplex"])
        self.note_fit(table, "ours", float(self.fit["simplex_seconds"][0]))

    def plain(self, table):
        command = [self.args.plain] + self.command
        plain = values_of(command + ["--evaluate", str(EVALUATIONS[self.name])])
        self.note(table, "plain", float(plain["ns_per_evaluation"][0]) * 1e-9,
                  float(plain["cpu_ns_per_evaluation"][0]) * 1e-9)
        if self.args.fits:
            plain = values_of(command + ["--simplex"])
            if plain["simplex_F"] != self.fit["simplex_F"] or plain["simplex_calls"] != self.fit["simplex_calls"]:
                sys.exit("%s: another fit: %s and %s" % (self.name, self.fit, plain))
            self.note_fit(table, "plain", float(plain["simplex_seconds"][0]))

    def rival(self, table):
        rival = values_of(["Rscript", os.path.join(self.args.yardsticks, "tmb", "fit.R")] + self.command +
                          ["--build", self.args.work, "--framework", "TMBad", "--no-nelder-mead"])
        wall, _, cpu = rival["ns_per_objective"]
        self.note(table, "rival", float(wall) * 1e-9, float(cpu) * 1e-9)
        self.note_fit(table, "rival", sum(float(rival[part + "_seconds"][0])
                                          for part in ("tape", "nlminb", "sdreport")))


class Benchmark:
    """One of this program's own benchmarks, of which each build has its own, and what is read from its lines."""

    def __init__(self, program, arguments, *measures):
        self.program, self.arguments, self.measures = program, arguments, measures

    def round(self, table, build, who):
        program = os.path.join(build, "bench", self.program)
        if not os.path.exists(program):
            return
        text = text_of([program] + self.arguments)
        for measure, pattern, seconds in self.measures:
            found = re.search(pattern, text, re.MULTILINE)
            if found:
                table.note(measure, who, seconds(float(found.group(1))))


def per(count):
    """A rate of so many in a second, or a minute, as the seconds of one, or so many."""
    return lambda rate: count / rate


def milliseconds(ms):
    return ms / 1000


def seconds(s):
    return s


EXAMPLE = r"^example data, three covariates +%s +\d+ +\d+ +%s"
MANY = r"^2000 broods, 10 visits each, %s"
BENCHMARKS = (
    Benchmark("bench_fits", [],
              ("example: one evaluation of a simplex", EXAMPLE % ("simplex", r"[\d.]+ +([\d.]+)"), seconds),
              ("example: covariances, three grids", EXAMPLE % ("covariances", r"([\d.]+)"), seconds)),
    Benchmark("bench_uncertainty", [],
              ("example: posterior of 15,625 nodes", r"15625 nodes, (\d+) nodes per second", per(15625)),
              ("example: profile by simplex, 25 points", r"^profile by simplex.* (\d+) points per minute", per(60 * 25)),
              ("example: profile by Marquardt, 25 points", r"^profile by Marquardt.* (\d+) points per minute",
               per(60 * 25))),
    Benchmark("bench_bootstrap", [],
              ("example: 200 replicates, simplex", r"^simplex +\d+ replicates on \d+ cores in +([\d.]+) s", seconds),
              ("example: 200 replicates, Marquardt", r"^Marquardt +\d+ replicates on \d+ cores in +([\d.]+) s", seconds),
              ("example: 200 replicates, simplex, one core", r"^simplex +\d+ replicates on 1 core +in +([\d.]+) s",
               seconds)),
    Benchmark("bench_reader", [],
              ("a million records read", r"^reading +([\d.]+) ms", milliseconds),
              ("a million records prepared for evaluation", r"^preparing the evaluation +([\d.]+) ms", milliseconds)),
    Benchmark("bench_results", [],
              ("2,000 broods: a randomisation, binomial", MANY % r"binomial +([\d.]+) randomisations/s", per(1)),
              ("2,000 broods: a randomisation, beta-binomial", MANY % r"beta-binomial +([\d.]+) randomisations/s", per(1)),
              ("2,000 broods: simulation", MANY % r".* simulation +\d+ records +([\d.]+) ms", milliseconds),
              ("2,000 broods: survival estimates", MANY % r".* survival estimates +\d+ records +([\d.]+) ms",
               milliseconds),
              ("2,000 broods: listing, partitioning", MANY % r".* partitioning +\d+ records +([\d.]+) ms", milliseconds),
              ("2,000 broods: listing, survival", MANY % r".* and survival +\d+ records +([\d.]+) ms", milliseconds)),
)


def start(table, build, who, window_manager):
    """The time until the menu is painted, on a display of its own."""
    program = os.path.join(build, "merlane")
    if not os.path.exists(program) or shutil.which("Xvfb") is None or (window_manager and not shutil.which("jwm")):
        return
    command = [sys.executable, os.path.join(HERE, "time_start.py"), program] + (["--window-manager", "jwm"]
                                                                                if window_manager else [])
    table.note("start to a painted menu" + (", window manager" if window_manager else ""), who, float(text_of(command)))


def main():
    p = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    p.add_argument("build")
    p.add_argument("--yardsticks")
    p.add_argument("--today", help="the build folder of an earlier state")
    p.add_argument("--work", default="yardsticks")
    p.add_argument("--sets", nargs="*", default=list("abc"), choices=list("abc"))
    p.add_argument("--rounds", type=int, default=5)
    p.add_argument("--fits", action="store_true", help="the plain program fits as well, which takes a minute a round")
    p.add_argument("--without-rival", action="store_true")
    args = p.parse_args()
    args.ours = os.path.join(args.build, "bench", "bench_yardstick")
    os.makedirs(args.work, exist_ok=True)
    args.plain = prepare(args.yardsticks, args.work) if args.yardsticks else None
    args.rival = bool(args.yardsticks) and not args.without_rival and has_rival()
    sets, cases = [], os.path.join(args.work, "cases.json")
    if os.path.exists(cases):
        with open(cases) as f:
            case = json.load(f)
        sets = [DataSet(name, case[name], args) for name in args.sets]
    else:
        print("no data sets in %s: those of the yardsticks are left out" % args.work)
    builds = [(args.build, "ours")] + ([(args.today, "today")] if args.today else [])
    table = Table()
    for _ in range(args.rounds):
        for data_set in sets:
            data_set.round(table)
        for benchmark in BENCHMARKS:
            for build, who in builds:
                benchmark.round(table, build, who)
        for window_manager in (False, True):
            for build, who in builds:
                start(table, build, who, window_manager)
    table.show(args.rounds)


if __name__ == "__main__":
    main()
