#!/usr/bin/env python3
"""Makes a wheel of the package as it stands in a build tree.

Usage: make_wheel.py PACKAGE VERSION OUTPUT     PACKAGE is the folder lumodevice; prints the file

The wheel is for this version of Python and this kind of machine. It is packed by Python's `wheel`.
"""

import pathlib
import shutil
import subprocess
import sys
import sysconfig
import tempfile

METADATA = """\
Metadata-Version: 2.1
Name: lumodevice
Version: {version}
Summary: Operates multi-channel DC electronic loads of the ZAN family
Requires-Python: >={python}
"""
WHEEL = """\
Wheel-Version: 1.0
Generator: lumodevice
Root-Is-Purelib: false
Tag: {tag}
"""


def main():
    package, version, output = sys.argv[1:]
    python = "{}.{}".format(*sys.version_info)
    interpreter = "cp{}{}".format(*sys.version_info)
    machine = sysconfig.get_platform().replace("-", "_").replace(".", "_")
    with tempfile.TemporaryDirectory() as folder:
        shutil.copytree(
            package,
            pathlib.Path(folder, "lumodevice"),
            ignore=shutil.ignore_patterns("__pycache__"),
        )
        info = pathlib.Path(folder, f"lumodevice-{version}.dist-info")
        info.mkdir()
        (info / "METADATA").write_text(METADATA.format(version=version, python=python))
        (info / "WHEEL").write_text(WHEEL.format(tag=f"{interpreter}-{interpreter}-{machine}"))
        pathlib.Path(output).mkdir(parents=True, exist_ok=True)
        subprocess.run(
            [sys.executable, "-m", "wheel", "pack", folder, "--dest-dir", output],
            check=True,
            stdout=subprocess.DEVNULL,
        )
    (made,) = pathlib.Path(output).glob(f"lumodevice-{version}-*{interpreter}*.whl")
    print(made)


if __name__ == "__main__":
    main()
