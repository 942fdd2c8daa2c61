"""Modes, settings and switches of a channel, as the panel's tables have them."""

from __future__ import annotations

from typing import NamedTuple

from ._lumodevice import MODES, SETTINGS, SWITCHES
from .modes import Mode

__all__ = [
    "CV_RESPONSE",
    "LOAD_COMMAND",
    "MODE_SETTINGS",
    "ON_OFF_SWITCHES",
    "PROTECTION_SETTINGS",
    "VOLTAGE_RANGE",
    "Mode",
    "Setting",
    "Switch",
    "named",
]


class Setting(NamedTuple):
    """A value that a channel keeps."""

    name: str
    """As the panel calls it, without the unit: "A", "Slew1", "OCP"."""
    unit: str
    """"A", "V", "Ω", "ms" or "A/uS"; that of the command in CV where it has another one there."""
    command: str
    """What sets it, with a value behind it; with "?" it is asked for."""
    command_in_cv: str
    """The same while the mode is CV."""


class Switch(NamedTuple):
    """Something that is on or off, or has one of some words."""

    name: str
    command: str
    words: tuple[str, ...]
    """() for on and off."""


def _split(caption: str) -> tuple[str, str]:
    """Name and unit of "A Value(A)" or "Level 1( A):"."""
    name, _, unit = caption.rstrip(": ").partition("(")
    return name.strip().removesuffix(" Value"), unit.rstrip(") ").strip()


def _setting(caption: str, beside: str, command: str, command_in_cv: str) -> Setting:
    name, unit = _split(caption)
    # What stands beside a check box has its name, and a limit the unit of what it limits.
    return Setting(
        name or beside.removeprefix("chk"),
        unit or ("A" if ":CURR" in command else "V"),
        command,
        command_in_cv,
    )


def _plain(name: str) -> str:
    return name.replace(" ", "").replace("_", "").replace("-", "").casefold()


def named(name: str, rows: dict[str, Setting] | dict[str, Switch]) -> str:
    """The name as the table writes it; blanks and capitals make no difference."""
    for known in rows:
        if _plain(known) == _plain(name):
            return known
    raise KeyError(f"{name!r}; there are {', '.join(rows)}")


_FRAMES: dict[str, dict[str, Setting]] = {}
for _frame, _caption, _beside, _command, _in_cv in SETTINGS:
    _made = _setting(_caption, _beside, _command, _in_cv)
    _FRAMES.setdefault(_frame, {})[_made.name] = _made

MODE_SETTINGS: dict[Mode, dict[str, Setting]] = {
    mode: _FRAMES[frame] for mode, (_, _, frame, _) in zip(Mode, MODES)
}
_OF_A_MODE = {frame for _, _, frame, _ in MODES}
PROTECTION_SETTINGS: dict[str, Setting] = {
    name: row
    for frame, rows in _FRAMES.items()
    if frame not in _OF_A_MODE
    for name, row in rows.items()
}

# A clear is no state, and the load has a place of its own.
_SWITCHES = [
    (name, caption, command, words)
    for name, caption, command, words in SWITCHES
    if not command.endswith("CLEAR")
]
ON_OFF_SWITCHES: dict[str, Switch] = {
    caption: Switch(caption, command, ())
    for name, caption, command, words in _SWITCHES
    if not words and name != "chkLoad"
}
VOLTAGE_RANGE, CV_RESPONSE = (
    Switch(name, command, tuple(words.split("|"))) for name, _, command, words in _SWITCHES if words
)
(LOAD_COMMAND,) = (command for name, _, command, _ in _SWITCHES if name == "chkLoad")
