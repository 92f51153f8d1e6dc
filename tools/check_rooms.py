#!/usr/bin/env python3
"""Checks that includes run downwards only: a room of src/ includes itself and the rooms before it, never a later one.
Qt stands in the windows alone. No two headers define a type of the same name: the linker would take the functions of one
for those of the other. Prints each violation as file:line and ends with 1 when there is one."""

import pathlib
import re
import sys

ROOMS = ["base", "platform", "forms", "control", "plots", "priors", "minimise", "uncertainty", "inference", "data", "import",
         "survival", "likelihood", "model", "results", "bootstrap", "program", "layouts", "ui", "batch", "web", "app"]
# The three ways to sit at the program do not know each other.
APART = {"batch": {"ui"}, "ui": {"batch"}, "web": {"ui", "batch"}}
QT_ROOM = "ui"
QT_FILE = "app/merlane.cpp"

TYPE = re.compile(r"^(?:struct|class|enum class) (\w+)[^;]*$")
INCLUDE = re.compile(r'^\s*#\s*include\s+(?:"([^"]+)"|<([^>]+)>)')


def violations(source):
    """Yields (path, line number, text) for every include that runs the wrong way."""
    for path in sorted(source.rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        name = path.relative_to(source).as_posix()
        room = name.split("/")[0]
        if room not in ROOMS:
            yield path, 1, f"{room} is not a room"
            continue
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            own, system = match.groups()
            if own is not None:
                included = own.split("/")[0]
                if included not in ROOMS:
                    yield path, number, f'"{own}" is in no room'
                elif ROOMS.index(included) > ROOMS.index(room) or included in APART.get(room, ()):
                    yield path, number, f"{room} must not include {included}"
            elif re.match(r"Q[A-Z]|Qt", system) and room != QT_ROOM and name != QT_FILE:
                yield path, number, f"<{system}> stands in {QT_ROOM}/ and {QT_FILE} alone"


def doubles(source):
    """The same for every type that another header defines already; what is nested in another is indented."""
    defined = {}
    for path in sorted(source.rglob("*.h")):
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = TYPE.match(line)
            if match and defined.setdefault(match[1], path) != path:
                yield path, number, f"{match[1]} is defined in {defined[match[1]].relative_to(source)}, too"


def main():
    source = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent / "src"
    if not source.is_dir():
        sys.exit(f"{source} is no folder")
    found = [*violations(source), *doubles(source)]
    for path, number, text in found:
        print(f"{path}:{number}: {text}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
