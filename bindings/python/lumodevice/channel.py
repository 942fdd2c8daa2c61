"""A channel of a load, with its settings."""

from __future__ import annotations

from collections.abc import Iterator, MutableMapping
from typing import TYPE_CHECKING

from . import errors
from ._lumodevice import READINGS
from .reading import Reading, number_in, state_in
from .tables import (
    CV_RESPONSE,
    LOAD_COMMAND,
    MODE_SETTINGS,
    ON_OFF_SWITCHES,
    PROTECTION_SETTINGS,
    VOLTAGE_RANGE,
    Mode,
    Setting,
    Switch,
    named,
)

if TYPE_CHECKING:
    from .load import Load

__all__ = ["Channel", "Loaded", "Settings", "Switches"]

_VOLTAGE, _CURRENT, _POWER, _LOAD, _ = READINGS


def _written(value: float | str) -> str:
    """A setting as an operator would type it. Raises ValueError for what is none."""
    if isinstance(value, str):
        if value.upper() not in ("MIN", "MAX"):
            raise ValueError(f"{value!r} is no setting: a number, MIN or MAX")
        return value.upper()
    text = f"{float(value):.9f}"
    if text.strip("+-") in ("inf", "nan"):
        raise ValueError(f"{value!r} is no setting")
    return text.rstrip("0").rstrip(".")


class Settings(MutableMapping[str, float]):
    """Settings of a channel by the names that the panel has for them.

    Reading one asks the load; setting one sends it and raises InstrumentError where the load
    refuses it. Blanks and capitals of a name make no difference.
    """

    def __init__(self, channel: Channel, rows: dict[str, Setting], mode: Mode | None) -> None:
        self._channel = channel
        self._rows = rows
        self._mode = mode

    def _command(self, name: str) -> str:
        row = self._rows[named(name, self._rows)]
        if row.command == row.command_in_cv:
            return row.command
        mode = self._mode or self._channel.mode
        return row.command_in_cv if mode is Mode.CV else row.command

    def __getitem__(self, name: str) -> float:
        return self._channel.ask_number(self._command(name) + "?")

    def __setitem__(self, name: str, value: float | str) -> None:
        """A number, or "MIN" or "MAX"."""
        self._channel.send(f"{self._command(name)} {_written(value)}")

    def __delitem__(self, name: str) -> None:
        raise TypeError("a setting cannot be deleted")

    def __iter__(self) -> Iterator[str]:
        return iter(self._rows)

    def __len__(self) -> int:
        return len(self._rows)

    def unit(self, name: str) -> str:
        """"A", "V", "Ω", "ms" or "A/uS"."""
        command = self._command(name)
        row = self._rows[named(name, self._rows)]
        return row.unit if command == row.command else "A"

    def range(self, name: str) -> tuple[float, float]:
        """The least and the greatest value, which the load is asked for: they are those of its
        module, mode and range."""
        command = self._command(name)
        return (
            self._channel.ask_number(command + "? MIN"),
            self._channel.ask_number(command + "? MAX"),
        )

    def __repr__(self) -> str:
        return f"<Settings {', '.join(self)}>"


class Switches(MutableMapping[str, bool]):
    """What can be on or off on a channel, beside the load itself: protections and the like."""

    def __init__(self, channel: Channel, rows: dict[str, Switch]) -> None:
        self._channel = channel
        self._rows = rows

    def _command(self, name: str) -> str:
        return self._rows[named(name, self._rows)].command

    def __getitem__(self, name: str) -> bool:
        return self._channel.ask_state(self._command(name) + "?")

    def __setitem__(self, name: str, on: bool) -> None:
        self._channel.send(f"{self._command(name)} {1 if on else 0}")

    def __delitem__(self, name: str) -> None:
        raise TypeError("a switch cannot be deleted")

    def __iter__(self) -> Iterator[str]:
        return iter(self._rows)

    def __len__(self) -> int:
        return len(self._rows)

    def __repr__(self) -> str:
        return f"<Switches {', '.join(self)}>"


class Channel:
    """A channel of a load.

    Each use asks the load which channel it is at, and moves it to this one where that is another:
    a reading is never that of a channel that somebody chose at the instrument meanwhile.
    """

    def __init__(self, load: Load, number: int, name: str) -> None:
        self._load = load
        self._number = number
        self._name = name

    @property
    def number(self) -> int:
        """1 to 9."""
        return self._number

    @property
    def name(self) -> str:
        """As the panel lists it, with its module: "CH3-2040"."""
        return self._name

    # The exchanges, each on this channel.

    def _choose(self) -> None:
        load = self._load
        if number_in(load.query(":CHAN?"), ":CHAN?") == self._number:
            return
        if load.automation.AutoQuery:
            raise errors.LoadError(
                "the auto query reads the channel that the panel shows; end it (AutoQuery = False) "
                "before another channel is used"
            )
        load.write(f":CHAN {self._number}", check=False)
        came = number_in(load.query(":CHAN?"), ":CHAN?")
        if came != self._number:
            raise errors.LoadError(f"channel {self._number} was not chosen: the load is at {came:g}")

    def ask(self, query: str) -> str:
        """The answer to a query on this channel. Raises NoAnswer, LinkLost."""
        with self._load.host.held():
            self._choose()
            return self._load.query(query)

    def ask_number(self, query: str) -> float:
        """The same where the answer is a number. Raises BrokenAnswer for anything else."""
        return number_in(self.ask(query), query)

    def ask_state(self, query: str) -> bool:
        """The same where the answer is 0 or 1."""
        return state_in(self.ask(query), query)

    def send(self, command: str) -> None:
        """Sends a command to this channel. Raises InstrumentError where the load refuses it."""
        with self._load.host.held():
            self._choose()
            self._load.write(command)

    # What is measured.

    @property
    def voltage(self) -> float:
        """V on the terminals, measured now; inf beyond the range."""
        return self.ask_number(_VOLTAGE)

    @property
    def current(self) -> float:
        """A through the load, measured now."""
        return self.ask_number(_CURRENT)

    @property
    def power(self) -> float:
        """W, measured now."""
        return self.ask_number(_POWER)

    def read(self) -> Reading:
        """Voltage, current, power and the load's state, asked one after the other."""
        load = self._load
        with load.host.held():
            self._choose()
            return Reading(
                load.now(),
                self._number,
                number_in(load.query(_VOLTAGE), _VOLTAGE),
                number_in(load.query(_CURRENT), _CURRENT),
                number_in(load.query(_POWER), _POWER),
                state_in(load.query(_LOAD), _LOAD),
            )

    # What is set.

    def on(self) -> None:
        """Switches the load of this channel on."""
        self.send(f"{LOAD_COMMAND} 1")

    def off(self) -> None:
        """Switches the load of this channel off."""
        self.send(f"{LOAD_COMMAND} 0")

    def loaded(self) -> Loaded:
        """The load on for the length of a block, and off at its end, whatever ends it:

        with channel.loaded(): ...
        """
        return Loaded(self)

    @property
    def is_on(self) -> bool:
        """Whether the load of this channel is on, as it says itself."""
        return self.ask_state(_LOAD)

    @property
    def mode(self) -> Mode:
        """The operating mode."""
        answer = self.ask(":MODE?").strip()
        try:
            return Mode(answer)
        except ValueError:
            raise errors.BrokenAnswer(f":MODE?: {answer!r} is no mode", "broken-answer") from None

    @mode.setter
    def mode(self, mode: Mode) -> None:
        self.send(f":MODE {Mode(mode).value}")

    @property
    def setpoints(self) -> Settings:
        """The settings of the mode that the channel is in: "A", "B", "Slew1", ..."""
        return self.setpoints_of(self.mode)

    def setpoints_of(self, mode: Mode) -> Settings:
        """The settings of a mode, also while the channel is in another one."""
        return Settings(self, MODE_SETTINGS[mode], mode)

    @property
    def limits(self) -> Settings:
        """Load-on voltage, protection levels and Go/NoGo limits: "VON", "OCP", "OVP", "UVP",
        "GoNogo High", "GoNogo Low" (V, in CV A)."""
        return Settings(self, PROTECTION_SETTINGS, None)

    @property
    def switches(self) -> Switches:
        """What is on or off: "VON Latch", "OCP", "OVP", "GoNogo"."""
        return Switches(self, ON_OFF_SWITCHES)

    @property
    def voltage_range(self) -> float:
        """The full scale of the voltage range in V. Set it to "LOW" or "HIGH"."""
        return self.ask_number(VOLTAGE_RANGE.command + "?")

    @voltage_range.setter
    def voltage_range(self, choice: str) -> None:
        self._set_word(VOLTAGE_RANGE, choice)

    @property
    def cv_response(self) -> str:
        """How fast CV follows: "LOW" or "FAST"."""
        return CV_RESPONSE.words[self.ask_state(CV_RESPONSE.command + "?")]

    @cv_response.setter
    def cv_response(self, choice: str) -> None:
        self._set_word(CV_RESPONSE, choice)

    def _set_word(self, switch: Switch, choice: str) -> None:
        word = choice.upper()
        if word not in switch.words:
            raise ValueError(f"{choice!r}; there are {', '.join(switch.words)}")
        self.send(f"{switch.command} {word}")

    def __repr__(self) -> str:
        return f"<Channel {self._number} {self._name}>"


class Loaded:
    """A channel whose load is on for the length of a block; see Channel.loaded()."""

    def __init__(self, channel: Channel) -> None:
        self._channel = channel

    def __enter__(self) -> Channel:
        try:
            self._channel.on()
        except BaseException:
            # The command may have gone out all the same.
            self._channel.off()
            raise
        return self._channel

    def __exit__(self, *raised: object) -> None:
        self._channel.off()
