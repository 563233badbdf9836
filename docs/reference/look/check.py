#!/usr/bin/env python3
"""Checks the pages that doxygen made, in the folder that is named: they bring nothing from the network, lead to nothing that
is not there, name no class or function that is not there, and the pages of the subsystems lead to each public class. Prints
what is not so; exit status 1 when there is anything."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[3]
ADDRESS = re.compile(r'(?:href|src)="([^"]*)"')
REMOTE = re.compile(r"^(?:https?:)?//", re.IGNORECASE)
LOADED = re.compile(r"@import|url\(\s*['\"]?(?:https?:)?//", re.IGNORECASE)
UNLINKED = re.compile(r"<code>((?:platform::|QW[A-Z])[\w:]*)(?:\(\))?</code>")
# Pages of classes, not of classes within classes, which these lead to.
CLASS = re.compile(r"^(?:class|struct)(?:platform_1_1)?[A-Z][A-Za-z]*\.html$")


def read(path):
    return path.read_text(encoding="utf-8", errors="replace")


def lead_nowhere(folder, pages):
    for path, text in pages.items():
        for address in ADDRESS.findall(text):
            target = address.split("#")[0]
            if REMOTE.match(address):
                yield f"{path.name}: {address} is on the network"
            elif target and not re.match(r"^(javascript|data):", target) and not (path.parent / target).exists():
                yield f"{path.name}: {address} is not there"
    for path in [*folder.rglob("*.css"), folder / "reference.js"]:
        if LOADED.search(read(path)):
            yield f"{path.name} brings something of its own"


def are_not_there(pages):
    """Names of ours that have no link, unless a source has them as a text: keys, interface files and their classes."""
    sources = "".join(read(path) for place in ("QWCore", "validators", "tools") for path in (ROOT / place).rglob("*.[ch]*"))
    for path, text in pages.items():
        for name in UNLINKED.findall(text):
            if f'"{name}"' not in sources:
                yield f"{path.name}: {name} is nothing that hosts have"


def main():
    folder = pathlib.Path(sys.argv[1])
    pages = {path: read(path) for path in folder.rglob("*.html")}
    subsystems = {path: text for path, text in pages.items() if path.name.startswith(("md_docs_reference", "index"))}
    linked = {address.split("#")[0] for text in subsystems.values() for address in ADDRESS.findall(text)}
    classes = sorted(path.name for path in pages if CLASS.match(path.name) and not path.name.endswith("-members.html"))
    wrong = [*lead_nowhere(folder, pages), *are_not_there(subsystems)]
    wrong += [f"no page of a subsystem leads to {name}" for name in classes if name not in linked]
    if len(subsystems) < 2 or not classes:
        wrong.append("there are no pages")
    print(*wrong, sep="\n", end="\n" if wrong else "")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
