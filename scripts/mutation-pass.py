#!/usr/bin/python3
"""Breaks one rule of the sources at a time and says which test notices.

Each mutant is built and tested in a worktree of its own (build/mutation), at the last commit, so that no broken
source is left anywhere else. A mutant of src/ROOM/ is shown to the tests of tests/ROOM/ first, and one that they
let live to those of the rooms above. What does not compile is passed over for another one. The survivors are listed
last: each is a missing test case, or a change that makes no difference.

Usage: scripts/mutation-pass.py [--count 100] [--seed 1] [--files 'src/dbaccess/*.cpp' ..] [--own-tests-only]
"""

import argparse
import contextlib
import dataclasses
import fnmatch
import os
import pathlib
import random
import re
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parent.parent
TREE = TOP / "build" / "mutation"
BUILD = TREE / "build" / "dev"
ROOMS = ["platform", "dbaccess", "compare", "browse", "query", "shell"]  # from the bottom to the top
TEXT = re.compile(r'"((?:[^"\\]|\\.)*)"')
CALL = re.compile(r"(?<=[\w>]\()(\w[\w.]*(?:\(\))?), (\w[\w.]*(?:\(\))?)(?=\))")
# What is looked for outside of texts, and what takes its place.
SWAPS = [(pattern, replacement) for one, other in [
    (" == ", " != "), (" && ", " || "), ("true", "false"), (" + ", " - "), ("++", "--"), ("min(", "max(")]
    for pattern, replacement in [(one, other), (other, one)]] + [
    (" < ", " <= "), (" <= ", " < "), (" > ", " >= "), (" >= ", " > "), ("!", "")]


@dataclasses.dataclass
class Mutant:
    path: str
    line: int
    kind: str
    new: str


def changed_text(text, generator):
    if not text:
        return "x"
    places = [i for i, letter in enumerate(text) if letter.isalnum() and (i == 0 or text[i - 1] not in "\\%")]
    if not places:
        return text + "x"
    place = generator.choice(places)
    return text[:place] + ("q" if text[place] != "q" else "z") + text[place + 1:]


def changes(line, begins_statement, generator):
    """Every way to break a line: (kind, broken line)."""
    code = TEXT.sub(lambda found: '"' + "_" * len(found[1]) + '"', line)  # of the same length
    code = code.split("//")[0].rstrip()
    if not code.strip() or code.lstrip().startswith(("#", "using ", "namespace ", "}", "case ", "*")):
        return
    for found in TEXT.finditer(line[:len(code)]):
        yield "text", line[:found.start(1)] + changed_text(found[1], generator) + line[found.end(1):]
    for pattern, replacement in SWAPS:
        for found in re.finditer(re.escape(pattern), code):
            if pattern == "!" and code[found.end():found.end() + 1] == "=":
                continue
            kind = f"{pattern.strip()} -> {replacement.strip()}"
            yield kind, line[:found.start()] + replacement + line[found.end():]
    for found in re.finditer(r"(?<![\w.:])\d+(?![\w.])", code):
        number = int(found[0])  # a twip more or less shows nowhere
        yield "number", line[:found.start()] + str(number + max(1, number // 2)) + line[found.end():]
    for found in CALL.finditer(code):
        yield "arguments", line[:found.start()] + f"{found[2]}, {found[1]}" + line[found.end():]
    if found := re.match(r"(\s*(?:\} else )?if (?:constexpr )?\()(.*)(\)(?: \{| [\w:].*;)?)$", code):
        yield "if not", line[:found.end(1)] + "!(" + line[found.start(2):found.end(2)] + ")" + line[found.start(3):]
    if begins_statement and (found := re.match(r"(\s*(?:if \(.*\) )?)[*\w].*;$", code)):
        declares = re.match(r"\s*(return [^;]|const .* = |(?!const |return|throw)[\w:<>]+[&*]? [\w(*])", code[found.end(1):])
        if not declares and "reserve(" not in code:
            yield "dropped", found[1] + "{}"


def all_mutants(patterns, generator):
    listed = subprocess.run(["git", "ls-files", "src"], cwd=TREE, check=True, capture_output=True, text=True)
    for path in listed.stdout.splitlines():
        if any(fnmatch.fnmatch(path, pattern) for pattern in patterns):
            before = ""
            for number, line in enumerate((TREE / path).read_text().splitlines()):
                for kind, new in changes(line, before.rstrip()[-1:] in ";{})", generator):
                    yield Mutant(path, number, kind, new)
                before = line.split(" //")[0]


@contextlib.contextmanager
def broken(mutant):
    """The line to put in its place, as long as it lasts."""
    path = TREE / mutant.path
    text = path.read_text()
    lines = text.splitlines()
    old, lines[mutant.line] = lines[mutant.line], mutant.new
    try:
        path.write_text("\n".join(lines) + "\n")
        yield old.strip()
    finally:
        path.write_text(text)


def build(target, jobs):
    return subprocess.run(["cmake", "--build", BUILD, "--parallel", str(jobs), "--target", target],
                          capture_output=True, text=True).returncode == 0


def noticed_by(room):
    """The first test of a folder that fails, and where; None when all pass."""
    run = subprocess.run(["ctest", "--test-dir", BUILD / "tests" / room, "--stop-on-failure", "--timeout", "180",
                          "--output-on-failure"], capture_output=True, text=True, errors="replace")
    if run.returncode == 0:
        return None
    program = re.search(r"^\s*\d+/\d+ Test +#\d+: (\w+) \.+(?![. ]*Passed)(.*?)\s+[\d.]+ sec", run.stdout, re.M)
    case = re.search(r"^(?:FAIL!|QFATAL) +: (.*)$", run.stdout, re.M)
    if not program:
        sys.exit(run.stdout + run.stderr)
    return f"{program[1]}: {case[1] if case else program[2]}"


def verdict(mutant, arguments):
    """None where it does not compile, else the test that notices, an empty text if there is none."""
    rooms = rooms_of(mutant.path)
    with broken(mutant):
        for room in rooms[:1] if arguments.own_tests_only else rooms:
            if not build(f"tests/{room}/all", arguments.jobs):
                return None
            if found := noticed_by(room):
                return found
    return ""


def rooms_of(path):
    """The room of a source and those above it."""
    return ROOMS[ROOMS.index(pathlib.PurePath(path).parts[1]):]


def make_tree():
    commit = subprocess.run(["git", "rev-parse", "HEAD"], cwd=TOP, check=True, capture_output=True, text=True).stdout
    if (TREE / ".git").exists():
        subprocess.run(["git", "checkout", "-q", "--force", "--detach", commit.strip()], cwd=TREE, check=True)
    else:
        subprocess.run(["git", "worktree", "prune"], cwd=TOP, check=True)
        subprocess.run(["git", "worktree", "add", "-q", "--detach", TREE, commit.strip()], cwd=TOP, check=True)
    subprocess.run(["cmake", "--preset", "dev"], cwd=TREE, check=True, stdout=subprocess.DEVNULL)
    return commit[:10]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--files", nargs="+", default=["src/dbaccess/*.cpp", "src/compare/*.cpp", "src/browse/*.cpp"])
    parser.add_argument("--own-tests-only", action="store_true", help="ask the tests of the same folder only")
    parser.add_argument("--jobs", type=int, default=1, help="of the compiler")
    arguments = parser.parse_args()
    os.nice(15)
    print(f"commit {make_tree()}, seed {arguments.seed}", flush=True)
    generator = random.Random(arguments.seed)
    mutants = list(all_mutants(arguments.files, generator))
    generator.shuffle(mutants)
    for room in {rooms_of(mutant.path)[0] for mutant in mutants}:
        if not build(f"tests/{room}/all", arguments.jobs) or noticed_by(room):
            sys.exit(f"The tests of {room} fail before anything is broken.")

    noticed, survivors = 0, []
    for mutant in mutants:
        if noticed + len(survivors) == arguments.count:
            break
        test = verdict(mutant, arguments)
        if test is None:
            continue
        noticed += test != ""
        if not test:
            survivors.append(mutant)
        print(f"{mutant.path}:{mutant.line + 1} [{mutant.kind}] {mutant.new.strip()}\n    {test or 'SURVIVED'}", flush=True)
    print(f"{noticed + len(survivors)} mutants of {len(mutants)} possible, {noticed} noticed. Survivors:")
    for mutant in survivors:
        print(f"{mutant.path}:{mutant.line + 1} [{mutant.kind}] {mutant.new.strip()}")


if __name__ == "__main__":
    main()
