#!/usr/bin/env python3
"""Holds the includes of the house against its floors: a file includes what stands in its own room or on a floor
below, rooms of one floor do not know each other, and nothing takes part in a circle.
Usage: scripts/check-includes.py [--rooms]"""

import collections
import fnmatch
import pathlib
import re
import sys

# The floors of each house, the lowest first, and the rooms that stand side by side on them. A room is the files
# whose path fits one of its patterns, of which the longest counts.
FLOORS = {
    "src": [
        ["platform/*", "icons/*"],
        ["shell/core/*"],
        ["dbaccess/*"],
        ["browse/*", "query/*", "compare/*"],
        ["shell/* main.cpp"],
    ],
    "sampleserver": [
        ["engine/values/*"],
        ["engine/syntax/*", "engine/store/*", "tds/*"],
        ["engine/catalog/*"],
        ["engine/binding/*"],
        ["engine/session/*", "data/*"],
        ["*"],
    ],
}

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


class House:
    """The files of one house, what each of them includes of it, and where each of them stands."""

    def __init__(self, folder, floors):
        self.rooms = {room: floor for floor, rooms in enumerate(floors) for room in rooms}
        paths = [path for ending in ("h", "cpp") for path in folder.rglob("*." + ending)]
        self.lines = {str(path.relative_to(folder)): path.read_text().count("\n") for path in paths}
        self.includes = {}
        for file in self.lines:
            near = pathlib.PurePosixPath(file).parent
            named = INCLUDE.findall((folder / file).read_text())
            self.includes[file] = sorted({name if name in self.lines else str(near / name) for name in named})
            self.includes[file] = [name for name in self.includes[file] if name in self.lines]

    def room(self, file):
        fitting = [(len(pattern), room) for room in self.rooms for pattern in room.split()
                   if fnmatch.fnmatch(file, pattern)]
        return max(fitting)[1] if fitting else None

    def wrong_arrows(self):
        for file, included in sorted(self.includes.items()):
            room = self.room(file)
            if room is None:
                yield f"{file} stands in no room"
                continue
            for other in included:
                below = self.room(other)
                if below not in (None, room) and self.rooms[below] >= self.rooms[room]:
                    yield f"{file} includes {other}, which does not stand below it"

    def circles(self):
        """Files that are reached from themselves."""
        for start in sorted(self.includes):
            seen, next_files = set(), list(self.includes[start])
            while next_files:
                file = next_files.pop()
                if file not in seen:
                    seen.add(file)
                    next_files += self.includes[file]
            if start in seen:
                yield f"{start} takes part in a circle"

    def show_rooms(self):
        files, lines = collections.Counter(), collections.Counter()
        for file, count in self.lines.items():
            files[self.room(file)] += 1
            lines[self.room(file)] += count
        for room, floor in reversed(self.rooms.items()):
            print(f"  {floor + 1}  {files[room]:4} files {lines[room]:6} lines  {room}")


def main():
    top = pathlib.Path(__file__).resolve().parent.parent
    wrong = 0
    for name, floors in FLOORS.items():
        house = House(top / name, floors)
        if not house.lines:
            sys.exit(f"{name}: no files")
        if "--rooms" in sys.argv[1:]:
            print(name)
            house.show_rooms()
        for text in [*house.wrong_arrows(), *house.circles()]:
            print(f"{name}: {text}")
            wrong += 1
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
