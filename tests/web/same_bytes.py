#!/usr/bin/env python3
"""Plays analyses by the batch runner for browsers, under node, and holds all that it writes against native's.

    same_bytes.py NATIVE_PROGRAM WEB_PROGRAM [--only TEXT] [--jobs N]

NATIVE_PROGRAM is build/merlane-batch, WEB_PROGRAM build-web/merlane-batch.js. The analyses are those that are kept in
tests/batch/analyses and in examples/, whose transcripts, exports and saved files must be the kept ones, byte for byte;
and every golden case, evaluated and minimised, with its covariances, where they must be those that the native program
writes now. Prints what differs and ends with 1 when anything does.
"""

import argparse
import concurrent.futures
import json
import pathlib
import subprocess
import sys
import tempfile

SOURCE = pathlib.Path(__file__).resolve().parents[2]
GOLDEN = SOURCE / "tests/golden"
LONGEST = 600  # s, for one analysis


def command_of(program):
    # Where node knows fetch, the compiler's loader would try it on files.
    return ["node", "--no-experimental-fetch", program] if program.suffix == ".js" else [program]


def play(program, batch, folder):
    """What a batch file leaves, by name: the files, the transcript, the errors and the exit status. It is played from its
    own folder, so that no path in the transcript depends on the machine."""
    with tempfile.TemporaryDirectory() as out:
        run = subprocess.run([*command_of(program), "--out", out, batch.name], cwd=folder, stdin=subprocess.DEVNULL,
                             capture_output=True, timeout=LONGEST)
        left = {path.name: path.read_bytes() for path in pathlib.Path(out).iterdir()}
        left |= {"transcript.txt": run.stdout, "errors": run.stderr, "status": str(run.returncode).encode()}
        return {name: bytes_.replace(out.encode(), b"OUT") for name, bytes_ in left.items()}


def first_difference(found, wanted):
    for number, (one, other) in enumerate(zip(found.splitlines(), wanted.splitlines()), 1):
        if one != other:
            return f"line {number}: {one[:200]!r} and not {other[:200]!r}"
    return f"{len(found)} bytes and not {len(wanted)}"


def differences(found, wanted):
    for name in sorted(found.keys() | wanted.keys()):
        if name not in found:
            yield f"{name} was not written"
        elif name not in wanted:
            yield f"{name} should not have been written"
        elif found[name] != wanted[name]:
            yield f"{name}: {first_difference(found[name], wanted[name])}"


def kept_analysis(batch, programs):
    folder = SOURCE / "tests/batch/analyses" / f"{batch.stem}.kept"
    wanted = {path.name: path.read_bytes() for path in folder.iterdir()}
    # A command that fails does so on purpose, and the transcript holds it.
    failed = b"\n      failure " in wanted["transcript.txt"]
    wanted["status"] = b"4" if failed else b"0"
    found = play(programs.web, batch, batch.parent)
    if not failed:
        wanted["errors"] = b""
    else:
        del found["errors"]
    return list(differences(found, wanted))


def golden_text(case, commands):
    """A batch file that reads the data of a case, loads its algorithm data and priors, and does these commands."""
    given = dict(zip(case["args"], case["args"][1:]))
    first, last = case["args"][case["args"].index("--years") + 1:][:2]
    # Names that are proposed have the time in them.
    lines = ["clock 2024-06-01 10:30:00", "press frmMenu.cmdInitialize", "press frmInitialize.cmdLoadData",
             f'file "{GOLDEN / case["data"]}" at "Load brood survival data file"',
             f'set frmInitialize.cboBroodCovs {given["--ncov"]}']
    if given["--ncov"] != "0":
        lines.append(f'set frmInitialize.cboFormat {given["--format"]}')
    lines += [f"set frmInitialize.cboStartYear {first}", f"set frmInitialize.cboEndYear {last}"]
    lines += [f"tick frmInitialize.{box}" for option, box in (("--censor-eggs", "chkCensorEggs"),
                                                              ("--censor-juvs", "chkCensorJuvs"))
              if option in case["args"]]
    lines += ["press frmInitialize.cmdDone", "press frmMenu.cmdLoadAlg", 'reply yes at "Load algorithm data"',
              f'file "{GOLDEN / case["alg"]}" at "Open algorithm data file"']
    if "--priors" in given:
        lines += ["press frmMenu.cmdBayesian", "press frmLoadPriors.cmdOpen", f'file "{GOLDEN / given["--priors"]}"',
                  "press frmSetPriors.mnuFinished", 'reply no at "Save Bayesian priors"',
                  f'enter {given["--constant"]} at "Enter constant"', "press frmMenu.cmdBayesian",
                  "press frmLoadPriors.cmdCancel"]
    return "\n".join(lines + commands) + "\n"


EXPORTS = ["export fit fit.json", "export parameters parameters.csv", "export visits visits.csv"]
CALL = ["press frmMenu.cmdOneFunction", *EXPORTS]
SIMPLEX = ["press frmMenu.cmdSimplex", 'reply yes at "Just checking"']
MARQUARDT = ["press frmMenu.cmdMarquardt", 'reply yes at "Just checking"', 'reply no at "Marquardt minimization"',
             'reply no at "Marquardt minimization"']
COVARIANCES = ["press frmMenu.cmdCovariance", 'reply no at "Covariance calculator"', "reply ok", "press frmAlgo.cmdFinish",
               "enter 1", "enter 0.1", "enter 0.01", "reply yes", 'enter 0.5 at "Enter constant"',
               'reply no at "Calculate optimistic SEs only?"', "press frmCovDisplay.cmdScreen",
               "press frmCovDisplay.cmdFile", "file saved.cov"]
WHAT = {"simplex": SIMPLEX, "marquardt": MARQUARDT, "simplex, then covariances": SIMPLEX + COVARIANCES}


def golden_analyses():
    """(name, text of a batch file) of every case, and of every minimisation that is kept of one."""
    cases = {case["name"]: case for case in json.loads((GOLDEN / "cases.json").read_text())["cases"]}
    for name, case in cases.items():
        yield f"golden {name}", golden_text(case, CALL)
    for fit in json.loads((GOLDEN / "fits.json").read_text())["fits"]:
        if fit["what"] in WHAT:
            calls = ["press frmMenu.cmdOneFunction", "close frmOneFunction"] * len(fit["one_function_calls"])
            yield (f'golden {fit["case"]}, {fit["what"]}',
                   golden_text(cases[fit["case"]], calls + WHAT[fit["what"]] + EXPORTS))


def golden_analysis(text, programs):
    with tempfile.TemporaryDirectory() as folder:
        batch = pathlib.Path(folder) / "golden.batch"
        batch.write_text(text)
        return list(differences(play(programs.web, batch, folder), play(programs.native, batch, folder)))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("native", type=lambda path: pathlib.Path(path).resolve())
    parser.add_argument("web", type=lambda path: pathlib.Path(path).resolve())
    parser.add_argument("--only", default="", help="analyses with this in their name")
    parser.add_argument("--jobs", type=int, default=2)
    programs = parser.parse_args()

    tasks = {f"kept {batch.stem}": (kept_analysis, batch)
             for folder in ("tests/batch/analyses", "examples") for batch in sorted((SOURCE / folder).glob("*.batch"))}
    tasks |= {name: (golden_analysis, text) for name, text in golden_analyses()}
    tasks = {name: task for name, task in tasks.items() if programs.only in name}
    if not tasks:
        sys.exit("there is no such analysis")
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(programs.jobs) as pool:
        runs = {name: pool.submit(play_one, given, programs) for name, (play_one, given) in tasks.items()}
        for name, run in runs.items():
            found = run.result()
            failed += bool(found)
            for difference in found:
                print(f"{name}: {difference}", flush=True)
    print(f"{len(tasks) - failed} of {len(tasks)} analyses the same")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
