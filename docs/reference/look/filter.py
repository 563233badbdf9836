#!/usr/bin/env python3
"""Reads a header for doxygen: prints it without what needs no words of its own, line for line. That is what cannot be
called, and what the language makes: functions that are deleted, and constructors and destructors without a comment that
take nothing or only a parent."""
import re
import sys

DELETED = re.compile(r"^\s*.*\)\s*(const\s*)?=\s*delete;\s*$")
PLAIN = re.compile(r"^\s*(virtual\s+)?(explicit\s+)?~?\w+\(((QWidget|QObject) \*parent( = \w+)?)?\)\s*(override|noexcept)?(\s*= default)?;\s*$")


def has_comment(lines, number):
    return lines[number - 1].lstrip().startswith("///") or "///<" in lines[number]


def main():
    with open(sys.argv[1], encoding="utf-8") as header:
        lines = header.read().splitlines()
    for number, line in enumerate(lines):
        speechless = (DELETED.match(line) or PLAIN.match(line)) and not has_comment(lines, number)
        print("" if speechless else line)


if __name__ == "__main__":
    main()
