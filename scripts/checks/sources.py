"""What the checks of sources share: the files, their flags, and the memory of what was in order."""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
DATABASE = TOP / "build/sanitize/compile_commands.json"
# Where an included name is looked up. Behind the first: headers that stand elsewhere once installed.
ROOTS = ("", "platform/include/", "platform/windows/include/", "recordings/include/", "simulator/include/",
         "views/qt/include/", "views/win32/include/")
INCLUDE = re.compile(r'^\s*#include\s+"([^"]+)"', re.MULTILINE)
OF_WINDOWS = re.compile(r'^#include <(?:windows|windowsx|winsock2|unknwn|ole2|olectl|commctrl)\.h>', re.MULTILINE)


def tracked(*patterns):
    """The files of the working tree that git does not ignore, by pattern."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard", *patterns],
                            cwd=TOP, check=True, capture_output=True)
    names = [name for name in listed.stdout.decode().split("\0") if name]
    return [name for name in names if (TOP / name).exists()]


def flags():
    """Of every source of the build, by name: the flags that say what it means (no warnings, no output)."""
    kept = ("-I", "-D", "-std")
    found = {}
    for entry in json.loads(DATABASE.read_text()):
        words = shlex.split(entry["command"])
        mine = []
        for word, following in zip(words, words[1:] + [""]):
            if word == "-isystem":
                mine += [word, following]
            elif word.startswith(kept):
                mine.append(word)
        found[os.path.relpath(entry["file"], TOP)] = mine
    return found


def file_of(included_name):
    """The file that an include means; None for what is made on configuring."""
    return next((root + included_name for root in ROOTS if (TOP / (root + included_name)).exists()), None)


def includes_of(name):
    """The files of the tree that a source includes itself."""
    found = (file_of(other) for other in INCLUDE.findall((TOP / name).read_text()))
    return [other for other in found if other]


def included(name, seen=None):
    """The name and those of all sources that it includes, by way of others too."""
    seen = set() if seen is None else seen
    if name not in seen:
        seen.add(name)
        for other in includes_of(name):
            included(other, seen)
    return seen


def of_windows(name):
    """Whether only a build for Windows has what a source needs: it includes a header of that system, or one that is
    installed there alone, perhaps by way of others."""
    return any("/win32/" in part or OF_WINDOWS.search((TOP / part).read_text()) for part in included(name))


def fingerprint(name, *others):
    """Changes whenever a source, what it includes, or one of the other texts does."""
    digest = hashlib.sha256()
    for text in others:
        digest.update(text.encode() + b"\0")
    for part in sorted(included(name)):
        digest.update(part.encode() + b"\0" + (TOP / part).read_bytes())
    return digest.hexdigest()


def check_all(kind, names, key, run):
    """Runs the check of each name on every core, but of those that were in order before with the same key.

    run(name) gives what is wrong, "" for nothing. Returns the exit status.
    """
    memory = TOP / "build/check" / kind
    memory.mkdir(parents=True, exist_ok=True)
    keys = {name: key(name) for name in names}
    due = [name for name in names if not (memory / keys[name]).exists()]
    wrong = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for name, text in zip(due, pool.map(run, due)):
            if text:
                print(text, file=sys.stderr)
                wrong += 1
            else:
                (memory / keys[name]).touch()
    print(f"check: {kind}: {len(names)} files, {len(due)} of them looked at, {wrong} with findings")
    return 1 if wrong else 0
