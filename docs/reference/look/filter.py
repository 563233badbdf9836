#!/usr/bin/env python3
"""Reads a header or a page for doxygen and prints it, line for line, without what doxygen can do nothing with.

Of a header that is what needs no words of its own: functions that are deleted, and constructors and destructors without a
comment that take nothing or only a parent. Of a page, links that lead out of the pages, to files of the source tree, whose
text stays; and the folders of its pictures, which doxygen knows."""
import pathlib
import re
import sys

DELETED = re.compile(r"^.*\)\s*(const\s*)?=\s*delete;\s*$")
PLAIN = re.compile(r"^\s*(virtual\s+)?(explicit\s+)?~?\w+\(((QWidget|QObject) \*parent( = \w+)?)?\)\s*(override|noexcept)?"
                   r"(\s*= default)?;\s*$")
LINK = re.compile(r"(?<!!)\[([^\]]*)\]\(([^)#]+)\)")
PICTURE = re.compile(r"(?<=\]\()[^)]*/([^/)]*\.(png|svg))(?=\))")


def header(lines):
    for number, line in enumerate(lines):
        has_comment = lines[number - 1].lstrip().startswith("///") or "///<" in line
        speechless = (DELETED.match(line) or PLAIN.match(line)) and not has_comment
        yield "" if speechless else line


def page(lines):
    pictures = (PICTURE.sub(r"\1", line) for line in lines)
    return [LINK.sub(lambda link: link[0] if link[2].endswith(".md") else link[1], line) for line in pictures]


def main():
    path = pathlib.Path(sys.argv[1])
    lines = path.read_text(encoding="utf-8").splitlines()
    print(*(page(lines) if path.suffix == ".md" else header(lines)), sep="\n")


if __name__ == "__main__":
    main()
