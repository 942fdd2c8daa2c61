"""What can go wrong between a program and a load, as exceptions."""

from __future__ import annotations

from ._lumodevice import FAILURES, BrokenOff, Fault, WrongThread

__all__ = [
    "BadAddress",
    "BrokenAnswer",
    "BrokenOff",
    "Fault",
    "HeldBack",
    "InstrumentError",
    "LinkLost",
    "LoadError",
    "NoAnswer",
    "NoInstrument",
    "WrongThread",
]


class LoadError(Exception):
    """Something went wrong with the load.

    kind is the one word that the component has for it ("no-answer", "refused", ...), or "".
    """

    kind: str = ""

    def __init__(self, message: str, kind: str = "") -> None:
        super().__init__(message)
        self.kind = kind


class NoInstrument(LoadError, ConnectionError):
    """No load could be connected to; the text says why."""


class BadAddress(NoInstrument, ValueError):
    """The address names no link, or one that needs what is not here."""


class LinkLost(LoadError, ConnectionError):
    """There is no link (any more): the load has gone, or was never connected."""


class NoAnswer(LoadError, TimeoutError):
    """The load did not answer in time."""


class BrokenAnswer(LoadError, ValueError):
    """An answer did not come whole, or is not what was asked for."""


class HeldBack(LoadError, PermissionError):
    """A command was not sent, for the control only observes."""


class InstrumentError(LoadError):
    """An entry of the load's own error queue.

    number and text are the load's; others has the entries that stood behind it.
    """

    def __init__(self, number: int, text: str, others: tuple[InstrumentError, ...] = ()) -> None:
        super().__init__(f"{number}, {text}")
        self.number = number
        self.text = text
        self.others = others


_KINDS: dict[str, type[LoadError]] = {
    "not-connected": LinkLost,
    "bad-address": BadAddress,
    "no-answer": NoAnswer,
    "vanished": LinkLost,
    "broken-answer": BrokenAnswer,
    "held-back": HeldBack,
}
_SENTENCES = dict(FAILURES)


def failed(failure: tuple[str, str], about: str, otherwise: type[LoadError]) -> LoadError:
    """The exception for what ZANCtrl.failure() says. A kind that has none of its own becomes the
    given one."""
    kind, sentence = failure
    return _KINDS.get(kind, otherwise)(f"{about}: {sentence}" if about else sentence, kind)


def no_instrument(failure: tuple[str, str]) -> NoInstrument:
    """The exception for a connect that came to nothing."""
    kind, sentence = failure if failure[0] != "none" else ("nothing-found", _SENTENCES["nothing-found"])
    return (BadAddress if kind == "bad-address" else NoInstrument)(sentence, kind)


def of_kind(kind: str, about: str, otherwise: type[LoadError] = LoadError) -> LoadError:
    """The same for a kind alone."""
    return failed((kind, _SENTENCES[kind]), about, otherwise)
