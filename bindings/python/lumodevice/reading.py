"""What a load answers, as values."""

from __future__ import annotations

from typing import TYPE_CHECKING, NamedTuple

from .errors import BrokenAnswer, InstrumentError

if TYPE_CHECKING:
    from datetime import datetime

__all__ = ["Identity", "Reading", "error_in", "number_in", "state_in"]

_NUMBER = frozenset("0123456789.+-eE")
# How a load writes what it cannot measure: more than the range, and not a number.
_INFINITE, _UNKNOWN = 9.9e37, 9.91e37


class Identity(NamedTuple):
    """Who the load says that it is."""

    maker: str
    model: str
    serial_number: str
    version: str


class Reading(NamedTuple):
    """What was measured on a channel at one time. A list of them is a table:
    pandas.DataFrame(readings) has these names as its columns."""

    time: float
    """Seconds since 1970, counted on from the connect by the loop's clock: it never jumps back."""
    channel: int
    voltage: float
    """V; inf beyond the range."""
    current: float
    """A; inf beyond the range."""
    power: float
    """W; inf beyond the range."""
    load: bool
    """Whether the load is on."""

    @property
    def when(self) -> datetime:
        """The time in the local time zone."""
        from datetime import datetime

        return datetime.fromtimestamp(self.time).astimezone()

    def as_row(self) -> dict[str, float | int | bool]:
        """With the units in the names, as `zanctl readings --csv` has them."""
        return {
            "time": self.time,
            "channel": self.channel,
            "voltage_V": self.voltage,
            "current_A": self.current,
            "power_W": self.power,
            "load": self.load,
        }


def number_in(answer: str, query: str) -> float:
    """The one number that an answer is. Raises BrokenAnswer for anything else."""
    text = answer.strip()
    try:
        # Python takes "nan", "1_0" and other digits; a load writes none of them.
        if not _NUMBER.issuperset(text):
            raise ValueError
        number = float(text)
    except ValueError:
        raise BrokenAnswer(f"{query}: {answer!r} is no number", "broken-answer") from None
    if number == _UNKNOWN:
        return float("nan")
    return float("inf") if number >= _INFINITE else number


def state_in(answer: str, query: str) -> bool:
    """On or off. Raises BrokenAnswer for anything but 0 and 1."""
    number = number_in(answer, query)
    if number not in (0, 1):
        raise BrokenAnswer(f"{query}: {answer!r} is neither 0 nor 1", "broken-answer")
    return number == 1


def error_in(answer: str, query: str) -> InstrumentError | None:
    """An entry of the error queue; None where it is empty. Raises BrokenAnswer."""
    number, _, text = answer.strip().partition(",")
    try:
        code = int(number)
    except ValueError:
        raise BrokenAnswer(f"{query}: {answer!r} is no entry of the queue", "broken-answer") from None
    return InstrumentError(code, text.strip().strip('"')) if code != 0 else None
