#!/usr/bin/env python3
"""The commands in the documents run as they are written, and print what the document says.

Usage: commands.py [DOCUMENT]...   (every document when none is named)

A comment above each block of commands says what is done with it (CONTRIBUTING.md lists the words):

    <!-- runs -->                        at the top of the source tree, as one script that has to succeed
    <!-- runs in a folder -->            in a folder of the document's own, with zanctl and zansim in the PATH
    <!-- file NAME -->                   is put into that folder
    <!-- does not run: WHY -->

In a block with "$ " before its commands, what stands below a command is what it prints; "..." stands for any
lines. With "; figures differ" behind "runs" or "folder" a number stands for any other.
"""

import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile

import sources

MARK = re.compile(r"<!-- (runs(?: in a folder)?(?:; figures differ)?|file [\w.]+|does not run: .+) -->")
COMMAND = re.compile(r"(\$ |scripts/|cmake |ctest |build/|zanctl |zansim |export |c\+\+ |git |sudo |\.ci/)")
TIME_LIMIT = 300  # seconds


def blocks(text):
    """(line number, mark or None, content) of every code block, indented or fenced."""
    lines = text.split("\n")
    at = 0
    mark = None
    while at < len(lines):
        line = lines[at]
        begin = at
        content = None
        if line.startswith("```"):
            end = lines.index("```", at + 1)
            content = lines[at + 1:end]
            at = end
        elif line.startswith("    ") and (at == 0 or not lines[at - 1].strip() or lines[at - 1].startswith("<!--")):
            end = at
            while end + 1 < len(lines) and (lines[end + 1].startswith("    ") or
                                            (not lines[end + 1] and end + 2 < len(lines) and
                                             lines[end + 2].startswith("    "))):
                end += 1
            content = [each[4:] for each in lines[at:end + 1]]
            at = end
        if content is not None:
            yield begin + 1, mark, content
            mark = None
        elif MARK.fullmatch(line):
            mark = MARK.fullmatch(line)[1]
        elif line.strip():
            mark = None
        at += 1


def steps(content):
    """(script, lines that it prints or None) of a block."""
    if not content[0].startswith("$ "):
        return [("\n".join(content), None)]
    found = []
    for line in content:
        if line.startswith("$ "):
            found.append((line[2:], []))
        else:
            found[-1][1].append(line)
    return found


def same(printed, expected, figures_differ):
    def pattern(lines):
        parts = []
        for line in lines:
            if line == "...":
                parts.append(r"(?:.*\n)*")
                continue
            part = re.escape(line.rstrip()) + r" *\n"
            if figures_differ:
                part = re.sub(r"\d+", r"\\d+", part)
                part = re.sub(r"(?:\\ )+", r" +", part)
            parts.append(part)
        return "".join(parts)

    while expected and not expected[-1]:
        expected = expected[:-1]
    return re.fullmatch(pattern(expected), printed) is not None


def run(script, folder, environment):
    """Status and output of a script; what it started in the background ends with it."""
    with tempfile.TemporaryFile("w+") as output:
        child = subprocess.Popen(["bash", "-euo", "pipefail", "-c", script], cwd=folder, env=environment,
                                 stdin=subprocess.DEVNULL, stdout=output, stderr=output, start_new_session=True)
        try:
            status = child.wait(TIME_LIMIT)
        except subprocess.TimeoutExpired:
            status = "no end"
        try:
            os.killpg(child.pid, signal.SIGTERM)
        except ProcessLookupError:
            pass
        output.seek(0)
        return status, output.read()


def check(document, work):
    """What is wrong with a document, and how many of its blocks ran."""
    home = work / "home"
    folder = work / "folder"
    for place in (home, folder):
        place.mkdir(parents=True)
    (folder / "examples").symlink_to(sources.TOP / "examples")
    programs = [str(sources.TOP / "build/release/hosts" / name) for name in ("zanctl", "zansim")]
    environment = {**os.environ, "HOME": str(home), "PATH": ":".join([*programs, os.environ["PATH"]])}
    wrong = []
    ran = 0
    for line, mark, content in blocks((sources.TOP / document).read_text()):
        where = f"{document}:{line}"
        if mark is None:
            if COMMAND.match(content[0]):
                wrong.append(f"{where}: no comment says whether these commands run")
        elif mark.startswith("file "):
            (folder / mark[len("file "):]).write_text("\n".join(content) + "\n")
        elif mark.startswith("runs"):
            ran += 1
            for script, expected in steps(content):
                # A program that reads its own input is left alone with the shell's redirections.
                status, printed = run(script, folder if "folder" in mark else sources.TOP, environment)
                if expected is None and status != 0:
                    wrong.append(f"{where}: {script}\nends with {status}:\n{printed}")
                elif expected is not None and not same(printed, expected, "figures differ" in mark):
                    wrong.append(f"{where}: {script}\nprints otherwise ({status}):\n{printed}")
    return wrong, ran


def main():
    made = subprocess.run(["scripts/run", "--version"], cwd=sources.TOP, capture_output=True, text=True)
    if made.returncode:
        print(made.stderr, file=sys.stderr)
        return 1
    work = pathlib.Path(tempfile.mkdtemp(prefix="lumodevice-check-"))
    found = 0
    ran = 0
    try:
        for number, document in enumerate(sys.argv[1:] or sources.tracked("*.md")):
            wrong, blocks_run = check(document, work / str(number))
            ran += blocks_run
            found += len(wrong)
            print("\n".join(wrong), file=sys.stderr, end="\n" if wrong else "")
    finally:
        shutil.rmtree(work)
    print(f"check: commands: {ran} blocks ran, {found} findings")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
