#!/usr/bin/env python3
"""Plays each batch file beside this program again and again, each time with one call to the system going wrong that had
gone well before, and looks at what is left.

    one_fault.py BATCH_PROGRAM SHIM [--every] [NAME...]

A file that a batch saves must be whole in the end: what stood there before, or what is written without a fault, never
half of it. A fault that costs anything ends the run with a status other than 0, and words; none may crash the program,
and nothing of ours may be left over. What is saved behind the fault is saved as if nothing had been. Without --every
memory that is not there is tried at the first requests and then at fewer and fewer, since there are thousands.
"""

import argparse
import errno
import itertools
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
FAULTS = [("open", errno.EMFILE), ("open", errno.EACCES), ("read", errno.EIO), ("read", "short"), ("read", "again"),
          ("write", errno.ENOSPC), ("write", "short"), ("write", "again"), ("fsync", errno.EIO),
          ("fchmod", errno.EPERM), ("rename", errno.EACCES), ("malloc", errno.ENOMEM)]
HARMLESS = {"short", "again"}
OLD = b"what stood here before\r\n"
LAST = "last.csv"  # what each batch file saves in the end
SECONDS = 60


class Found(Exception):
    """What a fault has brought to light."""


def play(program, batch, out, environment):
    """The status of a run, and all that it told."""
    run = subprocess.run([program, "--out", out, HERE / batch], env=os.environ | environment, timeout=SECONDS,
                         stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, cwd=HERE)
    return run.returncode, run.stdout + run.stderr


def files_in(folder):
    return {path.name: path.read_bytes() for path in pathlib.Path(folder).iterdir() if path.is_file()}


def with_old_files(folder, names):
    """A folder in which something stands already under each name, with permissions that a new file does not have."""
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    for name in names:
        path = pathlib.Path(folder, name)
        path.write_bytes(OLD)
        path.chmod(0o640)


def grows(name):
    """A log is appended to, and what it has is whole at any moment."""
    return name.endswith(".tvl")


def torn(found, wanted):
    """A part of what is written without the fault. What is other throughout was written behind a fault before it."""
    return found != wanted and wanted.startswith(found)


def check(wanted, status, told, left, call, how):
    if status < 0 or status > 4:
        raise Found(f"the program died (status {status})")
    for name in left:
        # What a bootstrap keeps as it grows stays when it cannot be reported, or the run stops, and says so.
        kept = name.startswith("BootstrappedParameters") and name.encode() in told
        if name.startswith((".merlane", "BootstrappedParameters")) and not kept:
            raise Found(f"{name} is left over")
    for name, bytes_wanted in wanted.items():
        if name not in left:
            raise Found(f"{name} is gone")
        if torn(left[name], bytes_wanted) and not grows(name):
            raise Found(f"{name} is torn")
    lost = sorted(name for name in wanted if left[name] != wanted[name])
    if lost and status == 0:
        raise Found(f"status 0, but {', '.join(lost)} not as without the fault")
    if lost and how in HARMLESS:
        raise Found(f"{', '.join(lost)} not written, which such a call does not prevent")
    if status != 0 and not told.strip():
        raise Found("a failure without a word")
    if call in ("write", "fsync", "fchmod", "rename") and status == 4 and LAST in lost and len(lost) > 1:
        raise Found("the command behind the fault has not worked")


def numbers(every):
    """The faults to be tried: all, or the first sixty and then ever fewer."""
    if every:
        return itertools.count(1)
    return itertools.chain(range(1, 61), (int(60 * 1.35**k) for k in itertools.count(1)))


def try_faults(arguments, batch, work):
    """How many faults were met, and what they brought to light."""
    out, hit = os.path.join(work, "out"), os.path.join(work, "hit")
    with_old_files(out, [])
    status, told = play(arguments.program, batch, out, {})
    if status != 0:
        sys.exit(f"{batch} fails without a fault:\n{told.decode()}")
    wanted = files_in(out)
    met, problems = 0, []
    for call, how in FAULTS:
        for number in numbers(arguments.every or call != "malloc"):
            with_old_files(out, wanted)
            pathlib.Path(hit).unlink(missing_ok=True)
            environment = {"LD_PRELOAD": arguments.shim, "MERLANE_FAULT": f"{call}:{number}:{how}",
                           "MERLANE_FAULT_HIT": hit}
            try:
                status, told = play(arguments.program, batch, out, environment)
                if not os.path.exists(hit):
                    break
                met += 1
                check(wanted, status, told, files_in(out), call, how)
            except subprocess.TimeoutExpired:
                problems.append(f"{batch} {call}:{number}:{how}: hangs")
            except Found as found:
                problems.append(f"{batch} {call}:{number}:{how}: {found}")
    return met, problems


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", type=os.path.abspath)
    parser.add_argument("shim", type=os.path.abspath)
    parser.add_argument("--every", action="store_true", help="try every request for memory, too")
    parser.add_argument("names", nargs="*", help="the batch files (default: all)")
    arguments = parser.parse_intermixed_args()
    names = arguments.names or sorted(path.name for path in HERE.glob("*.batch"))
    problems = []
    with tempfile.TemporaryDirectory() as work:
        for batch in names:
            met, found = try_faults(arguments, batch, work)
            print(f"{batch}: {met} faults, {len(found)} problems", flush=True)
            for problem in found[:20]:
                print("  " + problem)
            problems += found
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
