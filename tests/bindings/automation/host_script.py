#!/usr/bin/env python3
"""Runs the host script through the terminal host, and compares what it sent with host_script.wire: what the control
has to send as well.

Usage: host_script.py ZANCTL VISA_LIBRARY
"""

import os
import pathlib
import subprocess
import sys
import tempfile

SCRIPTS = pathlib.Path(__file__).resolve().parent / "scripts"


def sent(transcript):
    """What the program wrote, line by line."""
    return [line for line in transcript.read_text().splitlines() if line.startswith(">")]


def expected():
    return sent(SCRIPTS / "host_script.wire")


def main():
    if len(sys.argv) != 3:
        raise SystemExit(__doc__)
    with tempfile.TemporaryDirectory() as folder:
        transcript = pathlib.Path(folder, "transcript")
        subprocess.run([sys.argv[1], "--interleaved", "--virtual-time", "--visa-library", sys.argv[2], "--drive-c", folder,
                        "run", SCRIPTS / "host_script.zan"], check=True, stdout=subprocess.DEVNULL,
                       env={**os.environ, "ZANSIM_TRANSCRIPT": str(transcript)})
        found = sent(transcript)
    if found != expected():
        raise SystemExit("sent otherwise:\n" + "\n".join(found))


if __name__ == "__main__":
    main()
