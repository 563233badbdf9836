#!/usr/bin/env python3
"""Checks that the licence that hosts show is the one that the sources come under, word by word."""
import html
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]


def words(text):
    return text.split()


def main():
    licence = (ROOT / "LICENSE").read_text(encoding="utf-8")
    page = (ROOT / "QWCore/QWUtilities/resources/EULA.html").read_text(encoding="utf-8")
    shown = re.search(r"<h2>(.*?)</h2>\s*<blockquote id=\"licence\">(.*?)</blockquote>", page, re.DOTALL)
    if shown and words(html.unescape(re.sub(r"<[^>]*>", " ", " ".join(shown.groups())))) == words(licence):
        return 0
    print("the licence in EULA.html is not that of LICENSE")
    return 1


if __name__ == "__main__":
    sys.exit(main())
