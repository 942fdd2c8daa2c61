"""The type stubs are those of the tables and of the module, and strict checkers are content."""

import ast
import importlib.util
import os
import pathlib
import subprocess
import sys

import lumodevice
import pytest
from lumodevice import _lumodevice

PACKAGE = pathlib.Path(os.environ["SOURCE"], "bindings/python")


def test_stubs_are_what_the_tables_say():
    """PYTHONPATH=... python3 bindings/python/stubs/make_stubs.py bindings/python/lumodevice
    writes them anew."""
    spec = importlib.util.spec_from_file_location("make_stubs", PACKAGE / "stubs/make_stubs.py")
    made = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(made)
    for name, text in made.stubs().items():
        assert (PACKAGE / "lumodevice" / name).read_text() == text


def public(names):
    return {name for name in names if not name.startswith("__")}


def test_the_stub_of_the_module_names_what_is_there():
    tree = ast.parse((PACKAGE / "lumodevice/_lumodevice.pyi").read_text())
    classes = [node for node in tree.body if isinstance(node, ast.ClassDef)]
    assert public(vars(_lumodevice)) == {
        getattr(node, "name", None) or node.target.id
        for node in tree.body
        if isinstance(node, (ast.ClassDef, ast.FunctionDef, ast.AnnAssign))
    }
    for node in classes:
        stubbed = {
            getattr(entry, "name", None) or entry.target.id
            for entry in node.body
            if isinstance(entry, (ast.FunctionDef, ast.AnnAssign))
        }
        real = vars(getattr(_lumodevice, node.name))
        assert public(stubbed) == {
            name for name in public(real) if not name.startswith("_pybind")
        }, node.name
        assert stubbed <= set(dir(getattr(_lumodevice, node.name)))


def test_everything_public_has_a_docstring():
    for name in lumodevice.__all__:
        thing = getattr(lumodevice, name)
        assert thing.__doc__, name
        if isinstance(thing, type) and thing.__module__.startswith("lumodevice"):
            for member, value in vars(thing).items():
                if not member.startswith("_") and (callable(value) or isinstance(value, property)):
                    assert value.__doc__, f"{name}.{member}"


def strict(folder, text):
    mypy = pytest.importorskip("mypy")
    assert mypy
    program = folder / "program.py"
    program.write_text(text)
    environment = {key: value for key, value in os.environ.items() if key != "LD_PRELOAD"}
    environment["MYPYPATH"] = str(PACKAGE)
    return subprocess.run(
        [sys.executable, "-m", "mypy", "--strict", "--cache-dir", str(folder / "cache")]
        + ["-p", "lumodevice", "-m", "program"],
        cwd=folder,
        env={**environment, "PYTHONPATH": ""},
        capture_output=True,
        text=True,
    )


PROGRAM = """
import lumodevice
from lumodevice import Mode


def discharge(address: str) -> list[dict[str, float | int | bool]]:
    with lumodevice.connect(address) as load:
        channel = load.channel(3)
        channel.mode = Mode.CC_HIGH
        channel.setpoints["A"] = 1.5
        channel.switches["OCP"] = True
        load.automation["txtInput", 3].text = "1.5"
        return [reading.as_row() for reading in load.readings(1.0, count=10)]


async def watch(load: lumodevice.Load) -> float:
    async for reading in load.watch(0.2):
        return reading.voltage
    await load.background(load.write, ":LOAD OFF")
    return 0
"""


def test_package_and_programs_are_clean_under_strict_mypy(tmp_path):
    ran = strict(tmp_path, PROGRAM)
    assert ran.returncode == 0, ran.stdout


def test_a_wrong_program_is_seen(tmp_path):
    ran = strict(tmp_path, "import lumodevice\nlumodevice.connect(5).channel('3').voltage.x\n")
    assert ran.returncode == 1
    assert ran.stdout.count("program.py:2: error") == 3
