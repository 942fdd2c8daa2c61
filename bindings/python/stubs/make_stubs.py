#!/usr/bin/env python3
"""Writes the type stubs of what is made from tables: the members of ZANCtrl, and Mode.

Usage: make_stubs.py FOLDER     (PYTHONPATH has the package; FOLDER is where the stubs go)
"""

import pathlib
import sys

from lumodevice import _lumodevice
from lumodevice.modes import Mode

TEMPLATE = pathlib.Path(__file__).resolve().parent / "_lumodevice.pyi.in"


def optional(type_name):
    return f"{type_name} | None" if type_name == "FormattedIO488" else type_name or "None"


def members():
    """Getters before the putters of the same name, as a stub wants them."""
    lines = []
    gotten = set()
    for name, kind, argument, argument_type, result, _ in _lumodevice.MEMBERS:
        taken = f", {argument}: {argument_type}, /" if argument else ""
        if kind == "method":
            lines.append(f"    def {name}(self{taken}) -> {optional(result)}: ...")
        elif kind == "get":
            gotten.add(name)
            lines.append(f"    @property\n    def {name}(self) -> {optional(result)}: ...")
        else:
            if name not in gotten:
                # It can only be written; what a type checker needs to know a setter is a getter.
                lines.append(f"    @property\n    def {name}(self) -> {optional(argument_type)}: ...")
            lines.append(
                f"    @{name}.setter\n"
                f"    def {name}(self, value: {optional(argument_type)}) -> None: ..."
            )
    return "\n".join(lines)


def modes():
    lines = ["# What make_stubs.py writes from the table of modes.", "from enum import Enum", ""]
    lines.append("class Mode(Enum):")
    lines += [f'    {mode.name} = "{mode.value}"' for mode in Mode]
    return "\n".join(lines) + "\n"


def stubs():
    """The text of each stub by the name of its file."""
    return {
        "_lumodevice.pyi": TEMPLATE.read_text().replace("@MEMBERS@", members()),
        "modes.pyi": modes(),
    }


if __name__ == "__main__":
    for name, text in stubs().items():
        (pathlib.Path(sys.argv[1]) / name).write_text(text)
