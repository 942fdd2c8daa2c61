"""The wheel has all that an installation needs."""

import os
import pathlib
import subprocess
import sys
import zipfile

import lumodevice
import pytest

MAKE = pathlib.Path(os.environ["SOURCE"], "bindings/python/wheel/make_wheel.py")


def test_what_a_wheel_unpacks_works_by_itself(tmp_path):
    pytest.importorskip("wheel")
    package = pathlib.Path(lumodevice.__file__).parent
    made = subprocess.run(
        [sys.executable, str(MAKE), str(package), "1.2.3", str(tmp_path / "wheel")],
        capture_output=True,
        text=True,
        check=True,
    ).stdout.strip()
    with zipfile.ZipFile(made) as wheel:
        names = wheel.namelist()
        wheel.extractall(tmp_path / "site")
    assert {"lumodevice/py.typed", "lumodevice/_lumodevice.pyi"} <= set(names)
    assert "lumodevice-1.2.3.dist-info/RECORD" in names
    printed = subprocess.run(
        [sys.executable, "-c", "import lumodevice; print(lumodevice.__file__)"],
        env={**os.environ, "PYTHONPATH": str(tmp_path / "site")},
        capture_output=True,
        text=True,
        check=True,
    ).stdout
    assert printed.startswith(str(tmp_path / "site"))
