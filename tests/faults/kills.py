#!/usr/bin/env python3
"""Kills the batch program at random moments while it saves, and looks at what is left.

    kills.py BATCH_PROGRAM [--times N] [--seed S]

A file under which something stood holds that, or the new text whole. What a killed program has left of its own goes
with the next save in the folder, once it is a day old.
"""

import argparse
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import time

from one_fault import HERE, OLD, files_in, grows, play, with_old_files

A_DAY_AGO = time.time() - 2 * 86400


def killed_after(program, batch, out, seconds):
    """Plays a batch file, for so long at most; what is left in its folder."""
    run = subprocess.Popen([program, "--out", out, HERE / batch], cwd=HERE, stdin=subprocess.DEVNULL,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        run.wait(seconds)
    except subprocess.TimeoutExpired:
        run.kill()
        run.wait()
    return files_in(out)


def problem_of(left, wanted):
    for name, found in left.items():
        if name.startswith(".merlane"):
            continue
        if name.startswith("BootstrappedParameters"):  # the lines so far
            if found and not found.endswith(b"\r\n"):
                return f"{name} is torn"
        elif name not in wanted:
            return f"{name} is left over"
        elif found not in (OLD, wanted[name]) and not (grows(name) and wanted[name].startswith(found)):
            return f"{name} is torn"
    return next((f"{name} is gone" for name in wanted if name not in left), None)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", type=os.path.abspath)
    parser.add_argument("--times", type=int, default=30)
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    chance = random.Random(arguments.seed)
    problems, temporaries = [], 0
    with tempfile.TemporaryDirectory() as work:
        out = os.path.join(work, "out")
        batches = {}
        for batch in sorted(path.name for path in HERE.glob("*.batch")):
            with_old_files(out, [])
            begun = time.monotonic()
            play(arguments.program, batch, out, {})
            batches[batch] = files_in(out), time.monotonic() - begun
        for _ in range(arguments.times):
            batch = chance.choice(sorted(batches))
            wanted, takes = batches[batch]
            with_old_files(out, wanted)
            left = killed_after(arguments.program, batch, out, chance.uniform(0, takes))
            if problem := problem_of(left, wanted):
                problems.append(f"{batch}: {problem}")
            for name in left:
                if name.startswith(".merlane"):
                    temporaries += 1
                    os.utime(pathlib.Path(out, name), (A_DAY_AGO, A_DAY_AGO))
            play(arguments.program, batch, out, {})
            if any(name.startswith(".merlane") for name in files_in(out)):
                problems.append(f"{batch}: an old temporary file outlives the next save")
    print(f"{arguments.times} kills, {temporaries} temporary files left by them, {len(problems)} problems")
    for problem in problems:
        print("  " + problem)
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
