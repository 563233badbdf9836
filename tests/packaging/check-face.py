#!/usr/bin/env python3
"""Checks that docs/architecture.md names each folder of the libraries and lists the headers that hosts find: those of the source
tree by cmake/QWFace.cmake, or those of the installation whose include folder is named. Prints the list as it should be when it
is not; exit status 1 then."""
import pathlib
import re
import sys
import textwrap

ROOT = pathlib.Path(__file__).resolve().parents[2]


def headers_of_the_tree():
    listed = re.search(r"set\(QW_FACE_FOLDERS(.*?)\)", (ROOT / "cmake/QWFace.cmake").read_text(encoding="utf-8"), re.DOTALL)
    for folder in listed.group(1).split():
        yield from ((folder, path.stem) for path in (ROOT / "QWCore" / folder).glob("*.h"))
    for framework in ("QWPlatform", "QWBase", "QWUtilities"):
        yield framework, f"{framework.lower()}_export"


def headers_below(include):
    for path in include.rglob("*.h"):
        yield str(path.parent.relative_to(include)), path.stem


def listing(headers):
    folders = {}
    for folder, name in headers:
        folders.setdefault(folder, []).append(name)
    lines = [f"include/QWCore: {sum(map(len, folders.values()))} headers"]
    for folder, names in sorted(folders.items()):
        text = "  ".join(sorted(names, key=str.lower))
        lines += textwrap.wrap(text, 120, initial_indent=f"  {folder}/".ljust(30), subsequent_indent=" " * 30)
    return "\n".join(lines)


def unnamed_rooms(page):
    tree = page.split("```")[1]
    rooms = {path.parent.name for path in (ROOT / "QWCore").rglob("*.cpp")}
    return sorted(room for room in rooms if f"{room}/" not in tree)


def main():
    page = (ROOT / "docs/architecture.md").read_text(encoding="utf-8")
    found = listing(headers_below(pathlib.Path(sys.argv[1])) if len(sys.argv) > 1 else headers_of_the_tree())
    wrong = [f"docs/architecture.md does not name the room {room}" for room in unnamed_rooms(page)]
    if f"```\n{found}\n```" not in page:
        wrong += ["docs/architecture.md does not list what hosts find:", found]
    print(*wrong, sep="\n", end="\n" if wrong else "")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
