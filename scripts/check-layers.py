#!/usr/bin/env python3
"""Checks that arrows between the floors only point down. Prints each offending include; exit status 1 when there is any."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FLOORS = ["QWPlatform", "QWBase", "QWUtilities"]
# Inside the product: subsystem -> subsystems that it may include.
SUBSYSTEMS = {
    "plugins": {"shell"},
    "shortcuts": set(),
    "controllers": set(),
    "helpdesk": {"shell"},
    "recorder": set(),
    "shell": set(),
}
# Folders of QWPlatform whose headers only the seam's own assembly may name.
PRIVATE_ASSEMBLY = {"QWPlatform/System.cpp"}
INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]')


def included_files(path):
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        name = match.group(1)
        for candidate in (path.parent / name, ROOT / "QWCore" / name):
            if candidate.is_file():
                yield number, name, candidate.resolve().relative_to(ROOT / "QWCore")
                break


def floor_of(relative):
    return FLOORS.index(relative.parts[0])


def complaint(source, target):
    if floor_of(target) > floor_of(source):
        return f"{source.parts[0]} must not look up to {target.parts[0]}"
    linux = target.parts[:2] == ("QWPlatform", "linux")
    if linux and source.parts[:2] != ("QWPlatform", "linux") and str(source) not in PRIVATE_ASSEMBLY:
        return "only the Linux machine knows its own classes"
    if source.parts[0] == target.parts[0] == "QWUtilities" and len(source.parts) > 2 and len(target.parts) > 2:
        own, other = source.parts[1], target.parts[1]
        if own != other and other not in SUBSYSTEMS.get(own, set()):
            return f"{own} must not include {other}"
    return None


def main():
    failures = 0
    for path in sorted((ROOT / "QWCore").rglob("*")):
        if path.suffix not in {".h", ".cpp"}:
            continue
        source = path.relative_to(ROOT / "QWCore")
        for number, name, target in included_files(path):
            reason = complaint(source, target)
            if reason:
                print(f"QWCore/{source}:{number}: {name}: {reason}")
                failures += 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
