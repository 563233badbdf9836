#!/usr/bin/env python3
"""Checks that the host beside this uses everything that is public: it includes each public header, and names each exported
class and, of headers that have functions alone, one of these. Prints what it lacks; exit status 1 when there is anything."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "scripts"))
import faces  # noqa: E402


def lacking(host):
    for header in faces.headers():
        place = header.relative_to(faces.CORE)
        if f"#include <{place}>" not in host:
            yield f"#include <{place}>"
        declared = list(faces.declarations(header))
        classes = [name.split("::")[-1] for _, is_class, name, _ in declared if is_class]
        functions = [name.split("::")[-1] for _, is_class, name, _ in declared if not is_class]
        used = [name for name in classes + functions if re.search(rf"\b{name}\b(?!\.h)", host)]
        yield from (f"class {name}" for name in classes if name not in used)
        if functions and not used:
            yield f"a function of {place}"


def main():
    found = list(lacking((ROOT / "tests/packaging/host/main.cpp").read_text(encoding="utf-8")))
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
