#!/usr/bin/env python3
"""Checks that libraries call no function of the host whose last digits are the host's own: of the host's mathematical
library only what is exact everywhere, or rounds correctly, may be used. Their own stand in src/base/elementary.h.
Prints each violation as library: function and ends with 1 when there is one.

    tools/check_host_functions.py LIBM LIBRARY...      LIBM: the host's mathematical library, libm.so.6"""

import subprocess
import sys

EXACT = {"ceil", "copysign", "fabs", "fdim", "floor", "fmax", "fmin", "fmod", "frexp", "ilogb", "ldexp", "logb",
         "llrint", "llround", "lrint", "lround", "modf", "nan", "nearbyint", "nextafter", "nexttoward", "remainder",
         "remquo", "rint", "round", "roundeven", "scalbln", "scalbn", "sqrt", "trunc"}


def symbols(library, *options):
    """The names that nm lists, without versions."""
    listed = subprocess.run(["nm", "-P", *options, library], capture_output=True, text=True, check=True).stdout
    return {line.split()[0].split("@")[0] for line in listed.splitlines() if len(line.split()) > 1}


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    of_host = symbols(sys.argv[1], "-D", "--defined-only")
    if not {"exp", "lgamma", "sqrt"} <= of_host:
        sys.exit(f"{sys.argv[1]} is no mathematical library")
    forbidden = of_host - EXACT
    found = [(library, name) for library in sys.argv[2:] for name in sorted(symbols(library, "-u") & forbidden)]
    for library, name in found:
        print(f"{library}: {name}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
