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
EXAMPLES = HERE.parents[2] / "examples/automation"
UNDER_WINE = HERE.parents[2] / "scripts/checks/under-wine"


def of_windows(path):
    return "Z:" + str(path).replace("/", "\\")


def wine(*words, **variables):
    return subprocess.run([UNDER_WINE, *words], env={**os.environ, **variables}, timeout=300).returncode


def cscript(folder, visa, script, *arguments):
    return wine("cscript", "//nologo", of_windows(script), *arguments,
                LUMODEVICE_VISA_LIBRARY=of_windows(visa), LUMODEVICE_DRIVE_C=of_windows(folder),
                ZANSIM_TRANSCRIPT=of_windows(folder / (script.name + ".wire")))


def run(folder, visa, script, *arguments):
    """What the script wrote."""
    output = folder / (script.name + ".output")
    status = cscript(folder, visa, script, *arguments, of_windows(output))
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


def log_is_wrong(folder, visa, script):
    """Whether the discharge logger does not log a battery that goes down to 11.6 V, and leaves the load off."""
    log = folder / (script.name + ".csv")
    cscript(folder, visa, script, of_windows(log), "3", "20", "11.6", "0")
    lines = log.read_text().splitlines() if log.exists() else []
    sent = host_script.sent(folder / (script.name + ".wire"))
    try:
        rows = [[float(word) for word in line.split(",")] for line in lines[1:]]
        right = (lines[0] == "seconds,volts,amperes,watts,ampere_hours" and all(len(row) == 5 for row in rows)
                 and rows[-1][1] <= 11.6 and abs(rows[-1][2] - 20) < 0.1
                 and abs(rows[-1][4] - 20 * rows[-1][0] / 3600) < 0.001
                 and sent[-1] == "> :LOAD OFF\\x0A")
    except (IndexError, ValueError):
        right = False
    return differs(script.name, "right" if right else "\n".join(lines), "right")


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
            wrong += [log_is_wrong(folder, visa, EXAMPLES / f"discharge_logger.{kind}") for kind in ("vbs", "js")]
        finally:
            wine("regsvr32", "/s", "/u", of_windows(control))
    return 1 if any(wrong) else 0


sys.exit(main())
