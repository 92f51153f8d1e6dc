#!/usr/bin/env python3
"""Measures the program as it runs on a machine, under node and on the page in Chromium, on the same data.

    measure.py NATIVE_PROGRAM WEB_PROGRAM PAGE [--rounds N] [--browser NAME]

NATIVE_PROGRAM is build/merlane-batch, WEB_PROGRAM build-web/merlane-batch.js and PAGE out/merlane.html. The data are those of
the first fit, each brood as often as it takes. What the batch runners take for a step is the difference of two runs, with
the step and without; what the page takes is the time in which the program does not wait for a deed. Prints a table of
milliseconds, the middle of the rounds, and what the page takes to its menu and of memory.
"""

import argparse
import pathlib
import statistics
import subprocess
import tempfile
import time

from browser import Browser, wait_for
from same_bytes import command_of
from walks import Page, Play, with_script

SOURCE = pathlib.Path(__file__).resolve().parents[2]
EVALUATIONS = 10

READ = ["clock 2024-06-01 10:30:00", "seed 2024", "press frmMenu.cmdInitialize", "press frmInitialize.cmdLoadData",
        'file many.dat at "Load brood survival data file"', "set frmInitialize.cboBroodCovs 3",
        "set frmInitialize.cboStartYear 1995", "set frmInitialize.cboEndYear 1997", "press frmInitialize.cmdDone"]
START = ["press frmMenu.cmdLoadAlg", 'reply yes at "Load algorithm data"',
         f'file {SOURCE}/examples/first_fit.alg at "Open algorithm data file"']
EVALUATION = ["press frmMenu.cmdOneFunction", "close frmOneFunction"]
FIT = ["press frmMenu.cmdSimplex", 'reply yes at "Just checking"', "close frmSimplex"]
FITTED = FIT + ["press frmMenu.cmdSaveAlg", 'file fitted.alg at "Save algorithm data in..."']
BOOTSTRAP = ["press frmMenu.cmdUserSummary", "enter 20", 'reply yes at "Choose among output options"',
             "press frmSummary.cmdBootstrap", 'enter 100 at "Parametric bootstrap"', 'enter 35 at "Parametric bootstrap"',
             'reply yes at "Choose minimization algorithm"', 'reply yes at "Confirmation request"', "file simplex.bpv",
             'reply yes at "Confirmation request"', "file simplex.bse"]

# What is measured: on how many times the 402 records, what comes before it, the step, and how often the step is done in it.
STEPS = {
    "100,000 records read and taken": (249, [], READ, 1),
    "20,000 records: an evaluation": (50, READ + START + EVALUATION, EVALUATION * EVALUATIONS, EVALUATIONS),
    "402 records: a fit by simplex": (1, READ + START, FIT, 1),
    "20,000 records: a fit by simplex": (50, READ + START, FIT, 1),
    "402 records: a bootstrap of 100 replicates": (1, READ + START + FITTED, BOOTSTRAP, 1),
}


def write_data(path, times):
    """The broods of the first fit, so many times, each with a code of its own."""
    head, *records = (SOURCE / "examples/first_fit.dat").read_text().splitlines()
    lines = [head]
    for turn in range(times):
        for record in records:
            year, code, rest = record.split(",", 2)
            lines.append(f"{year},{code.strip()}{turn:02X},{rest}")  # as wide as it was
    path.write_text("\n".join(lines) + "\n")


def run(program, lines, folder):
    """Milliseconds of a batch runner."""
    batch = folder / "measured.batch"
    batch.write_text("\n".join(lines) + "\n")
    with tempfile.TemporaryDirectory() as out:
        begun = time.perf_counter()
        subprocess.run([*command_of(program), "--out", out, batch.name], cwd=folder, check=True, capture_output=True)
        return 1000 * (time.perf_counter() - begun)


# Adds up, in `worked`, the time in which the program does not wait.
WATCH = """let since = performance.now(), wake = deeds.wake;
window.worked = 0;
Object.defineProperty(deeds, "wake", {
  get: () => wake,
  set(value) {
    if (value) worked += performance.now() - since;
    else since = performance.now();
    wake = value;
  },
});"""


class Measured(Play):
    """A batch file on a page, line by line."""

    def __init__(self, page, folder, lines):
        batch = folder / "measured.batch"
        batch.write_text("\n".join(lines) + "\n")
        super().__init__(page, batch, lambda _: None)

    def check_saved(self):
        pass


def run_on_page(browser, page_file, before, step, folder):
    """Milliseconds of a step."""
    page = Page(browser, page_file.as_uri())
    page.settle()
    page.run(WATCH)
    Measured(page, folder, before).run()
    worked = page.run("return worked")
    Measured(page, folder, step).run()
    return page.run("return worked") - worked


# Says when the first window has been painted: a frame after it was there.
PAINTED = """const look = () => document.querySelector(".window:not([hidden])")
  ? requestAnimationFrame(() => setTimeout(() => (window.painted = performance.now())))
  : requestAnimationFrame(look);
look();"""


def time_to_menu(browser, page_file):
    """Milliseconds from the call of the page to its painted menu."""
    browser.open(page_file.as_uri())
    return wait_for(lambda: browser.run("return window.painted || null"), "the menu")


def memory_of_page(driver):
    """(all that is resident, what is the page's alone) in MB, of the largest process that draws a page."""
    children = {}
    for stat in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            children.setdefault(int(stat.read_text().rsplit(")", 1)[1].split()[1]), []).append(int(stat.parent.name))
        except OSError:
            pass
    below, sizes = [driver.pid], []
    while below:
        process = below.pop()
        below += children.get(process, [])
        if b"--type=renderer" not in pathlib.Path(f"/proc/{process}/cmdline").read_bytes():
            continue
        table = pathlib.Path(f"/proc/{process}/smaps_rollup").read_text().splitlines()[1:]
        kept = {line.split(":")[0]: int(line.split()[1]) / 1000 for line in table}
        sizes.append((kept["Rss"], kept["Private_Clean"] + kept["Private_Dirty"]))
    return max(sizes)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    for name in ("native", "web", "page"):
        parser.add_argument(name, type=lambda path: pathlib.Path(path).resolve())
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--browser", default="chromium")
    given = parser.parse_args()

    print(f"| Measure (ms) | Native | Node | times | Page in {given.browser.title()} | times |\n|---|---|---|---|---|---|")
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for what, (times, before, step, count) in STEPS.items():
            write_data(folder / "many.dat", times)
            middles = []
            for program in (given.native, given.web):
                middles.append(statistics.median(run(program, before + step, folder) - run(program, before, folder)
                                                 for _ in range(given.rounds)) / count)
            found = []
            for _ in range(given.rounds):
                with Browser(given.browser) as browser:
                    found.append(run_on_page(browser, given.page, before, step, folder) / count)
            native, node, page = (*middles, statistics.median(found))
            print(f"| {what} | {native:.1f} | {node:.1f} | {node / native:.1f} | {page:.1f} | {page / native:.1f} |", flush=True)

        told = with_script(given.page, PAINTED, folder)
        found = []
        for _ in range(given.rounds):
            with Browser(given.browser) as browser:
                found.append(time_to_menu(browser, told))
        print(f"\nTo the painted menu: {statistics.median(found):.0f} ms")
        if given.browser != "chromium":
            return
        for times in (0, 50, 249):
            with Browser("chromium") as browser:
                page = Page(browser, given.page.as_uri())
                page.settle()
                if times:
                    write_data(folder / "many.dat", times)
                    Measured(page, folder, READ + START + EVALUATION + FIT).run()
                resident, own = memory_of_page(browser.driver.process)
                print(f"Memory with {402 * times:,} records, behind a fit: {resident:.0f} MB resident, {own:.0f} MB its own")


if __name__ == "__main__":
    main()
