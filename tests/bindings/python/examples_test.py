"""The examples run, on the simulated load in virtual time."""

import csv
import os
import pathlib
import subprocess
import sys

import pytest

EXAMPLES = pathlib.Path(os.environ["SOURCE"], "examples/python")


def run(folder, name, *words):
    return subprocess.run(
        [sys.executable, str(EXAMPLES / name), *words],
        cwd=folder,
        capture_output=True,
        text=True,
        check=True,
    ).stdout


def test_a_battery_is_discharged_and_plotted(tmp_path):
    printed = run(tmp_path, "battery_discharge.py", "--simulate")
    assert " Ah in " in printed
    with open(tmp_path / "discharge.csv") as file:
        rows = list(csv.DictReader(file))
    assert len(rows) > 20
    assert float(rows[-1]["voltage"]) < 10.5 < float(rows[-2]["voltage"])
    if "no picture" not in printed:
        assert (tmp_path / "discharge.png").read_bytes().startswith(b"\x89PNG")


def test_the_load_line_of_a_supply_is_swept(tmp_path):
    printed = run(tmp_path, "load_line.py", "--simulate")
    assert len(printed.splitlines()) == 13
    milliohms = float(printed.split("has ")[1].split()[0])
    assert milliohms == pytest.approx(20, abs=2)


def test_the_notebook_runs_cell_by_cell(tmp_path):
    printed = run(tmp_path, "notebook.py")
    assert "CH3-2040" in printed
    assert "refused: -222" in printed
    assert "A Value(Ω)" in printed


def test_two_benches_are_watched_at_once(tmp_path):
    printed = run(tmp_path, "two_benches.py", "--simulate")
    assert "bench 1 is low" in printed
    assert "bench 2: 12." in printed
