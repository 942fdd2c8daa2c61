#!/usr/bin/env python3
"""The documents' links lead to files and headings that are there, and the paths and tests that they name exist.

Links out of the tree are not followed.
"""

import fnmatch
import os
import re
import sys

import sources

LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)\)")
SPAN = re.compile(r"`([^`\n]+)`")
HEADING = re.compile(r"^#{1,6} (.+)$", re.MULTILINE)
FENCED = re.compile(r"^```.*?^```$", re.MULTILINE | re.DOTALL)

TEST = re.compile(r"^TEST(?:_F|_P)?\((\w+),\s+(\w+)\)", re.MULTILINE)
# Paths elsewhere that look like ours.
NOT_OF_THE_TREE = {"lumodevice/drive_c", "lumodevice/history", "lumodevice/libzansim_visa.so"}


def prose(text):
    """The text without its code blocks."""
    text = FENCED.sub("", text)
    return "\n".join("" if line.startswith("    ") else line for line in text.split("\n"))


def anchors(text):
    """As the usual readers of Markdown make them of headings."""
    names = set()
    for heading in HEADING.findall(prose(text)):
        plain = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading).lower()
        names.add(re.sub(r"[^\w\- ]", "", plain).replace(" ", "-"))
    return names


def unknown_tests(document):
    """What a table with the heading "Tests" names that is no test; `.name` is of the suite named before it."""
    there = {test for name in sources.tracked("tests/*.cpp") for test in TEST.findall((sources.TOP / name).read_text())}
    listed = False
    for row in (sources.TOP / document).read_text().split("\n"):
        listed = row.startswith("|") and (listed or row.endswith("| Tests |"))
        suite = ""
        for before, name in re.findall(r"`(\w*)\.(\w+)`", row if listed else ""):
            suite = before or suite
            if (suite, name) not in there:
                yield f"{document}: names the test {suite}.{name}, which is not there"


def main():
    files = set(sources.tracked())
    folders = {os.path.dirname(name) for name in files}
    folders |= {parent for folder in folders for parent in (folder.rsplit("/", n)[0] for n in range(1, 6))}
    tops = {name.split("/")[0] for name in files if "/" in name}
    known = files | folders | {name[len(root):] for root in sources.ROOTS for name in files if name.startswith(root)}
    wrong = list(unknown_tests("docs/testing.md"))
    for document in sources.tracked("*.md"):
        text = (sources.TOP / document).read_text()
        for target in LINK.findall(prose(text)):
            if re.match(r"[a-z]+:", target):
                continue
            path, _, anchor = target.partition("#")
            there = os.path.normpath(os.path.join(os.path.dirname(document), path)) if path else document
            if there not in known:
                wrong.append(f"{document}: links to {target}, which is not there")
            elif anchor and anchor not in anchors((sources.TOP / there).read_text()):
                wrong.append(f"{document}: {there} has no heading for #{anchor}")
        for span in SPAN.findall(prose(text)):
            name = span.rstrip("/")
            if "/" not in span or span.split("/")[0] not in tops or not re.fullmatch(r"[\w./*-]+", span):
                continue
            if name in NOT_OF_THE_TREE:
                continue
            if name not in known and not fnmatch.filter(known, name):
                wrong.append(f"{document}: names {span}, which is not there")
    print("\n".join(wrong), file=sys.stderr, end="\n" if wrong else "")
    return 1 if wrong else 0


sys.exit(main())
