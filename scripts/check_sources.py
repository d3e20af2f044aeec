#!/usr/bin/env python3
"""Looks for what clang-format cannot keep: the direction of the rooms, circles of includes, and one dialect.

    scripts/check_sources.py

Prints a line for each finding, as compilers do, and exits with 1 if there is one.
"""

from __future__ import annotations

import re
import subprocess
import sys
from collections.abc import Iterator
from pathlib import Path

# What the files of a room may include, by the beginnings of the paths; CONTRIBUTING.md has the reasons.
PUBLIC = ("bcast/", "services/")
MAY_INCLUDE = {
    "include/": (),
    "services/": ("bcast/",),
    "machine/": ("machine/",),
    "src/frame/": (*PUBLIC, "machine/", "src/frame/"),
    "src/": (*PUBLIC, "machine/", "src/frame/", "the file's own folder"),
    "embedded/": (*PUBLIC, "machine/", "embedded/"),
    "catalogue/": (*PUBLIC, "catalogue/"),
}

# In src/, embedded/ and machine/: how it is not written, and how it is.
NUMBER = r"u?int(?:8|16|32|64)_t|size_t|ptrdiff_t|bool|char|int|unsigned|float|double"
DIALECT = (
    (re.compile(rf"static_cast<(?:{NUMBER})>\("), "a number is cast as in int32_t(value)"),
    (re.compile(r"template <[^>]*\btypename\b"), "a type parameter is a class"),
    (re.compile(r"gnu::always_inline|__attribute__\(\(always_inline"), "see machine/inlining.h"),
    (
        re.compile(r"\bstd::(?:mem(?:cpy|set|chr|cmp|move)|strlen|malloc|calloc|free|abort)\("),
        "C functions stand without std::",
    ),
    (re.compile(r"#include <(?:stddef|stdint|stdlib|stdio|string)\.h>"), "C headers are included by their C++ names"),
    (re.compile(r"__builtin_cpu_supports|target_clones|\btarget\("), "see machine/level.h and machine/pick.h"),
)
DIALECT_IS_DEFINED_IN = ("machine/inlining.h", "machine/level.h", "machine/pick.h")

INCLUDE = re.compile(r'^\s*#\s*include\s+["<]([^">]+)[">]')


def source_files() -> list[Path]:
    """Those under version control, or about to be."""
    command = ["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.h", "*.hpp", "*.c", "*.cpp"]
    names = subprocess.run(command, check=True, capture_output=True, text=True).stdout.split()
    return [Path(name) for name in names if Path(name).exists()]


def includes(file: Path) -> Iterator[tuple[int, str]]:
    """Of the project's own headers: line numbers, and paths as they are written."""
    for number, line in enumerate(file.read_text().splitlines(), 1):
        found = INCLUDE.match(line)
        if found and ("/" in found[1] or (file.parent / found[1]).exists()):
            yield number, found[1]


def path_of(included: str, by: Path) -> Path | None:
    """The file of this project that an include means, if it is one."""
    for folder in (Path(), Path("include"), by.parent):
        if (folder / included).exists():
            return folder / included
    return None


def is_allowed(included: str, by: Path, room: str) -> bool:
    if path_of(included, by) is None or "/" not in included:
        return True
    own = included.startswith(f"{by.parent.as_posix()}/") and "the file's own folder" in MAY_INCLUDE[room]
    return own or included.startswith(MAY_INCLUDE[room])


def wrong_directions(file: Path) -> Iterator[str]:
    room = next((room for room in MAY_INCLUDE if file.as_posix().startswith(room)), None)
    if room is None:
        return
    for number, included in includes(file):
        if not is_allowed(included, file, room):
            yield f"{file}:{number}: {room} may not include {included}"


def circles(files: list[Path]) -> Iterator[str]:
    """Of files of the rooms, or benchmarks, that need each other; a header and the .cpp file of the same name count as one."""
    needs: dict[Path, set[Path]] = {}
    for file in files:
        if not file.as_posix().startswith((*MAY_INCLUDE, "bench/")):
            continue
        for _, included in includes(file):
            target = path_of(included, file)
            if target is not None and target.with_suffix("") != file.with_suffix(""):
                needs.setdefault(file.with_suffix(""), set()).add(target.with_suffix(""))
    finished: set[Path] = set()

    def visit(unit: Path, way: list[Path]) -> Iterator[str]:
        if unit in way:
            yield "a circle: " + " -> ".join(str(each) for each in [*way[way.index(unit) :], unit])
        elif unit not in finished:
            for needed in sorted(needs.get(unit, ())):
                yield from visit(needed, [*way, unit])
            finished.add(unit)

    for unit in sorted(needs):
        yield from visit(unit, [])


def other_dialects(file: Path) -> Iterator[str]:
    if not file.as_posix().startswith(("src/", "embedded/", "machine/")):
        return
    for number, line in enumerate(file.read_text().splitlines(), 1):
        for pattern, meant in DIALECT:
            if pattern.search(line) and file.as_posix() not in DIALECT_IS_DEFINED_IN:
                yield f"{file}:{number}: {meant}: {line.strip()}"


def without_opening(file: Path) -> Iterator[str]:
    if file.as_posix().startswith(("src/", "embedded/", "machine/")) and not file.read_text().startswith("//"):
        yield f"{file}:1: does not open with what it is for"


def main() -> int:
    files = source_files()
    findings = list(circles(files))
    for file in files:
        findings += [*wrong_directions(file), *other_dialects(file), *without_opening(file)]
    for finding in findings:
        print(finding)
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
