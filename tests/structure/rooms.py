#!/usr/bin/env python3
"""Holds the include lines of src/ against the order of rooms that docs/internals.md prints.

usage: rooms.py SOURCE_FOLDER

A room may use itself and what stands before it; programs, behind the bar, do not use one another. Where a room has rooms of
its own, these have an order of theirs, and what lies beside them in the room may use them all. Headers do not include
run/persistent.h. Units (a header with its source file) never depend on each other, straight or in a ring.
"""

import pathlib
import re
import sys

HEADING = "## Rooms and arrows"
LONG_LIVED = "run/persistent.h"


def printed_order(internals):
    """The rooms as the document lists them: those that everybody may use, and the programs."""
    section = internals.split(HEADING, 1)[1].split("\n## ", 1)[0]
    listed = re.search(r"^    (.+)\|(.+)$", section, re.MULTILINE)
    inner = {room: names.split() for room, names in re.findall(r"^    (\w+):(.+)$", section, re.MULTILINE)}
    return listed.group(1).split(), listed.group(2).split(), inner


def includes_of(text):
    return re.findall(r'^#include "([^"]+)"', text, re.MULTILINE)


def complaints_about_rooms(files, shared, programs):
    """One sentence for each include line that the order forbids; `files` maps paths below src/ to their include lines."""
    order = shared + programs
    for path, included in files.items():
        room = path.split("/")[0]
        if room not in order:
            yield f"src/{path}: the room {room} is not listed under '{HEADING}'"
            continue
        for header in included:
            other = header.split("/")[0]
            if other == room:
                continue
            if other not in shared:
                yield f"src/{path} includes {header}, which belongs to a program or to no room"
            elif order.index(other) > order.index(room):
                yield f"src/{path} includes {header}, but {other} comes after {room}"
        if path.endswith(".h") and LONG_LIVED in included:
            yield f"src/{path} is a header and includes {LONG_LIVED}"


def place_within(path, inner):
    """The room of a path, the room within it or None, and where that comes: None for one that is not listed."""
    room, below = path.split("/", 1)
    order = inner.get(room, [])
    if "/" not in below:
        return room, None, len(order)
    name = below.split("/")[0]
    return room, name, order.index(name) if name in order else None


def complaints_about_inner_rooms(files, inner):
    """The same within rooms: `inner` maps a room to those that it has, in their order."""
    for path, included in files.items():
        room, name, place = place_within(path, inner)
        if place is None:
            yield f"src/{path}: {name} is not listed among the rooms of {room} under '{HEADING}'"
            continue
        for header in included:
            other, _, place_of_header = place_within(header, inner)
            if other == room and place_of_header is not None and place_of_header > place:
                yield f"src/{path} includes {header}, which comes after it in {room}"


def ring(files):
    """A ring of units that depend on one another, as a list that ends where it begins; empty when there is none."""
    needs = {}
    for path, included in files.items():
        unit = path.rsplit(".", 1)[0]
        needs.setdefault(unit, set()).update(header.rsplit(".", 1)[0] for header in included)
        needs[unit].discard(unit)
    done, path = set(), []

    def search(unit):
        if unit in path:
            return path[path.index(unit):] + [unit]
        if unit in done:
            return []
        path.append(unit)
        for other in sorted(needs.get(unit, ())):
            found = search(other)
            if found:
                return found
        path.pop()
        done.add(unit)
        return []

    for unit in sorted(needs):
        found = search(unit)
        if found:
            return found
    return []


def complaints(files, shared, programs, inner):
    found = list(complaints_about_rooms(files, shared, programs)) + list(complaints_about_inner_rooms(files, inner))
    circle = ring(files)
    if circle:
        found.append("these depend on one another: " + " -> ".join(circle))
    return found


def check_the_check():
    """Every rule finds its own breach."""
    breaches = [
        {"low/a.h": ["high/b.h"]},
        {"high/a.h": ["run/b.h"]},
        {"run/a.h": ["other/b.h"]},
        {"unknown/a.h": []},
        {"run/a.h": [LONG_LIVED]},
        {"low/a.h": ["low/b.h"], "low/b.cpp": ["low/a.h"]},
        {"run/first/a.h": ["run/second/b.h"]},
        {"run/first/a.cpp": ["run/b.h"]},
        {"run/unknown/a.h": []},
        {"low/unknown/a.h": []},
    ]
    order = ["low", "high"], ["run", "other"], {"run": ["first", "second"]}
    for files in breaches:
        assert complaints(files, *order), files
    assert not complaints({"run/a.cpp": ["low/b.h", "run/a.h", "run/second/c.h", LONG_LIVED],
                           "run/second/c.cpp": ["run/first/d.h", "high/e.h"]}, *order)


def main():
    check_the_check()
    source = pathlib.Path(sys.argv[1])
    shared, programs, inner = printed_order((source / "docs/internals.md").read_text())
    files = {
        str(path.relative_to(source / "src")): includes_of(path.read_text())
        for pattern in ("*.h", "*.cpp")
        for path in sorted((source / "src").rglob(pattern))
    }
    found = complaints(files, shared, programs, inner)
    for complaint in found:
        print(complaint)
    print(f"{len(files)} files in {len(shared)} rooms and {len(programs)} programs, {len(found)} complaints")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
