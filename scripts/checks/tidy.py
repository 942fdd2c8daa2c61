#!/usr/bin/env python3
"""clang-tidy over the library, the platform and what differs from the branch main; with --rest over all else, with
--new over what the youngest commits touched."""

import os
import subprocess
import sys

import sources

ALWAYS = ("lumodevice/", "platform/")
# Each takes a quarter of a minute: what is looked at between two commits must not take long.
MOST_NEW = 12


def changed():
    """What differs from the branch main, where there is one."""
    names = set()
    for base in ("origin/main", "main"):
        begin = subprocess.run(["git", "merge-base", base, "HEAD"], cwd=sources.TOP, capture_output=True, text=True)
        if begin.returncode == 0:
            differ = subprocess.run(["git", "diff", "--name-only", begin.stdout.strip()], cwd=sources.TOP,
                                    check=True, capture_output=True, text=True)
            names.update(differ.stdout.split("\n"))
            break
    return names


def youngest():
    """The sources that commits touched last, the youngest commit's first; a shallow clone has one commit."""
    log = subprocess.run(["git", "log", "--first-parent", "--format=", "--name-only", "-30", "--diff-filter=AM", "--",
                          "*.cpp"], cwd=sources.TOP, check=True, capture_output=True, text=True)
    return list(dict.fromkeys(name for name in log.stdout.split("\n") if name))


def main():
    flags = sources.flags()
    version = subprocess.run(["clang-tidy", "--version"], check=True, capture_output=True, text=True).stdout
    rules = (sources.TOP / ".clang-tidy").read_text()
    all_sources = [name for name in sources.tracked("*.cpp") if name in flags]
    if "--new" in sys.argv[1:]:
        names = [name for name in youngest() if name in all_sources][:MOST_NEW]
    elif "--rest" in sys.argv[1:]:
        names = [name for name in all_sources if not name.startswith(ALWAYS)]
    else:
        differing = changed()
        names = [name for name in all_sources if name.startswith(ALWAYS) or name in differing]
    # The longest first, so that no core is left with one at the end.
    names.sort(key=lambda name: -(sources.TOP / name).stat().st_size)

    def run(name):
        ran = subprocess.run(["clang-tidy", "-p", os.path.dirname(sources.DATABASE), "--quiet", name],
                             cwd=sources.TOP, capture_output=True, text=True)
        return ran.stdout or ran.stderr if ran.returncode else ""

    return sources.check_all("tidy", names,
                             lambda name: sources.fingerprint(name, "tidy", version, rules, " ".join(flags[name])),
                             run)


sys.exit(main())
