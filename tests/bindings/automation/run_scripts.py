#!/usr/bin/env python3
"""Runs scripts of other languages over the control, registered under Wine, and compares what they wrote.

Usage: run_scripts.py OCX VISA_LIBRARY     (of Windows both: the control, and the simulated instrument for it)

The script hosts of Wine end with status 0 whatever happens: a script that came to its end says "done" and ends with 7.
"""

import os
import pathlib
import subprocess
import sys
import tempfile

import host_script

HERE = pathlib.Path(__file__).resolve().parent
UNDER_WINE = HERE.parents[2] / "scripts/checks/under-wine"


def of_windows(path):
    return "Z:" + str(path).replace("/", "\\")


def wine(*words, **variables):
    return subprocess.run([UNDER_WINE, *words], env={**os.environ, **variables}, timeout=300).returncode


def run(folder, visa, script, *arguments):
    """What the script wrote."""
    output = folder / (script.name + ".output")
    status = wine("cscript", "//nologo", of_windows(script), *arguments, of_windows(output),
                  LUMODEVICE_VISA_LIBRARY=of_windows(visa), LUMODEVICE_DRIVE_C=of_windows(folder),
                  ZANSIM_TRANSCRIPT=of_windows(folder / (script.name + ".wire")))
    text = output.read_text() if output.exists() else ""
    if status != 7 or not text.endswith("done\n"):
        raise SystemExit(f"{script.name} ended with status {status} and wrote:\n{text}")
    return text


def differs(what, found, expected):
    if found == expected:
        print(f"{what}: as expected")
        return False
    print(f"{what}: NOT as expected:\n{found}\nexpected:\n{expected}", file=sys.stderr)
    return True


def main():
    if len(sys.argv) != 3:
        raise SystemExit(__doc__)
    control, visa = (pathlib.Path(word).resolve() for word in sys.argv[1:])
    scripts = HERE / "scripts"
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        if wine("regsvr32", "/s", of_windows(control)) != 0:
            raise SystemExit("regsvr32 does not register the control")
        try:
            expected = (scripts / "members.expected").read_text()
            wrong = [differs(script, run(folder, visa, scripts / script), expected)
                     for script in ("members.vbs", "members.js")]
            run(folder, visa, scripts / "run_script.js", of_windows(scripts / "host_script.zan"))
            wrong.append(differs("the bytes on the wire", host_script.sent(folder / "run_script.js.wire"),
                                 host_script.expected()))
        finally:
            wine("regsvr32", "/s", "/u", of_windows(control))
    return 1 if any(wrong) else 0


sys.exit(main())
