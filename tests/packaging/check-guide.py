#!/usr/bin/env python3
"""Checks that the C++ of docs/host-guide.md stands in examples/guide, which is built and run: each run of lines between
"…" must be found there, whatever its indentation. Prints each run that is not; exit status 1 when there is any."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]


def normalized(text):
    return "\n".join(line.strip() for line in text.strip().splitlines())


def runs(guide):
    for block in re.findall(r"^```cpp\n(.*?)^```", guide, re.MULTILINE | re.DOTALL):
        yield from filter(None, map(normalized, re.split(r"^\s*…\s*$", block, flags=re.MULTILINE)))


def main():
    sources = [normalized(path.read_text(encoding="utf-8")) for path in sorted((ROOT / "examples/guide").glob("*.[ch]*"))]
    wanted = list(runs((ROOT / "docs/host-guide.md").read_text(encoding="utf-8")))
    lost = [run for run in wanted if not any(run in source for source in sources)]
    for run in lost:
        print(f"not in examples/guide:\n{run}\n")
    return 1 if lost or not wanted else 0


if __name__ == "__main__":
    sys.exit(main())
