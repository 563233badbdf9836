#!/usr/bin/env python3
"""Checks that the code of docs/host-guide.md and of the pages in docs/reference stands in examples/guide or
examples/snippets, which are built and run, and that nothing is missing to use it: each block of C++ names its file in its
first line; each run of lines between "…" is found there, whatever its indentation; the includes of a file's blocks together
are those of the file. Prints what is not so; exit status 1 when there is anything."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
INCLUDE = re.compile(r"^#include .*$", re.MULTILINE)


def normalized(text):
    return "\n".join(line.strip() for line in text.strip().splitlines())


FILES = {"cmake": "CMakeLists.txt", "ini": "bundle/com.example.myhost.desktop"}


def blocks(guide):
    """The file that each block is from, and its text."""
    for language, text in re.findall(r"^```(cpp|cmake|ini)\n(.*?)^```", guide, re.MULTILINE | re.DOTALL):
        named = re.match(r"// (\S+)\n", text)
        yield (named.group(1), text[named.end():]) if named else (FILES.get(language, ""), text)


def runs(text):
    return filter(None, map(normalized, re.split(r"^\s*…\s*$", INCLUDE.sub("", text), flags=re.MULTILINE)))


def pages():
    return [ROOT / "docs/host-guide.md", *sorted((ROOT / "docs/reference").glob("*.md"))]


def main():
    guide, snippets = ROOT / "examples/guide", ROOT / "examples/snippets"
    paths = {path.name: path for path in [*guide.glob("*.[ch]*"), *snippets.glob("*.[ch]*")]}
    paths |= {path: guide / path for path in FILES.values()}
    sources = {name: path.read_text(encoding="utf-8") for name, path in paths.items()}
    wrong, shown = [], {}
    for name, text in (block for page in pages() for block in blocks(page.read_text(encoding="utf-8"))):
        if name not in sources:
            wrong.append(f"this block names no file of examples/guide or examples/snippets in its first line:\n{text}")
            continue
        shown.setdefault(name, set()).update(INCLUDE.findall(text))
        wrong += [f"not in {name}:\n{run}\n" for run in runs(text) if run not in normalized(sources[name])]
    for name, includes in shown.items():
        there = set(INCLUDE.findall(sources[name]))
        wrong += [f"{name} has {line}, but no block of it" for line in sorted(there - includes)]
        wrong += [f"a block of {name} has {line}, but not the file" for line in sorted(includes - there)]
    print("\n".join(wrong))
    return 1 if wrong or not shown else 0


if __name__ == "__main__":
    sys.exit(main())
