#!/usr/bin/env python3
"""Checks that the pages of the reference tell each key of the Info.plist, of the settings and of the environment that the
sources read. Prints what they do not tell; exit status 1 when there is anything."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
READ = [
    re.compile(r'objectForInfoDictionaryKey\("([^"]+)"'),
    re.compile(r'\b(?:\w+Key|key)(?:\[\])? = "([^"]+)"'),
    re.compile(r'(?:qEnvironmentVariable\w*|q?getenv)\("([^"]+)"'),
]
# The desktop's own, what a plug-in says of itself, and what stands inside a value that is told.
OTHERS = {"DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR", "CFBundleExecutable", "TB Item Identifiers",
          "TB Default Item Identifiers", "TB Display Mode", "TB Icon Size Mode", "TB Size Mode", "TB Is Shown"}


def keys():
    for path in sorted(path for place in ("QWCore", "validators", "tools") for path in (ROOT / place).rglob("*.cpp")):
        text = path.read_text(encoding="utf-8")
        yield from ((key, path.relative_to(ROOT)) for pattern in READ for key in pattern.findall(text))


def main():
    pages = "".join(path.read_text(encoding="utf-8") for path in (ROOT / "docs/reference").glob("*.md"))
    found = list(keys())
    wrong = sorted({f"{path}: no page tells {key}" for key, path in found if f"`{key}`" not in pages and key not in OTHERS})
    print(*wrong, sep="\n", end="\n" if wrong else "")
    return 1 if wrong or not found else 0


if __name__ == "__main__":
    sys.exit(main())
