"""A load, as people know them from instrument libraries."""

from __future__ import annotations

import time
from collections.abc import Iterator, Mapping
from typing import TYPE_CHECKING

from . import errors
from ._lumodevice import READINGS, Host, ZANCtrl, simulated_host, system_host
from .channel import Channel
from .reading import Identity, Reading, error_in

if TYPE_CHECKING:
    from collections.abc import AsyncIterator, Awaitable, Callable, Iterable
    from typing import ParamSpec, TypeVar

    from .watching import Worker

    Parameters = ParamSpec("Parameters")
    Result = TypeVar("Result")

__all__ = ["Load", "connect", "connect_async"]

_ERROR = READINGS[-1]
# More than any queue holds, so that a load that always says the same ends it.
_MOST_ERRORS = 100


def _nothing(text: str) -> None:
    """Information boxes are for people at a panel; here exceptions tell."""


class Load:
    """A load that is connected. connect() makes one; leave it as a context, or close() it."""

    def __init__(self, automation: ZANCtrl) -> None:
        self._automation = automation
        self._host = automation.host
        self._start = time.time() - self._host.time
        self._worker: Worker | None = None

    @property
    def automation(self) -> ZANCtrl:
        """The control itself, with the members of the automation interface and its panel."""
        return self._automation

    @property
    def host(self) -> Host:
        """What the control is made on: its loop and its clock."""
        return self._host

    def now(self) -> float:
        """Seconds since 1970, counted on from the connect by the loop's clock."""
        return self._start + self._host.time

    @property
    def connected(self) -> bool:
        """Whether there is a link."""
        return not self._automation.closed and self._automation.isConnected

    @property
    def identity(self) -> Identity:
        """Who the load says that it is; it is asked."""
        answer = self.query("*IDN?")
        fields = [field.strip() for field in answer.split(",")]
        if len(fields) != len(Identity._fields):
            raise errors.BrokenAnswer(f"*IDN?: {answer!r} is no identity", "broken-answer")
        return Identity(*fields)

    # Exchanges.

    def query(self, text: str) -> str:
        """Sends a query and returns its own answer, without its line end. Raises NoAnswer,
        BrokenAnswer, LinkLost."""
        if "?" not in text:
            raise ValueError(f"{text!r} asks nothing; write() sends it")
        # In the background another thread may be at the load: nothing may come between.
        with self._host.held():
            self._send(text)
            answer = self._automation.ResultStr
        if not answer:
            raise errors.of_kind("no-answer", text)
        return answer

    def write(self, text: str, *, check: bool = True) -> None:
        """Sends a command, which has no answer. With check the error queue is asked behind it, and
        InstrumentError raised for what it holds."""
        if "?" in text:
            raise ValueError(f"{text!r} asks something; query() has the answer")
        with self._host.held():
            self._send(text)
            if check:
                self.check()

    def _send(self, text: str) -> None:
        zan = self._automation
        zan.SendCmd(text)
        failure = zan.failure()
        if failure[0] != "none":
            raise errors.failed(failure, text, errors.LinkLost)
        if not zan.isConnected:
            raise errors.of_kind("not-connected", text)

    def errors(self) -> list[errors.InstrumentError]:
        """Empties the load's error queue: the oldest comes first."""
        found: list[errors.InstrumentError] = []
        while len(found) < _MOST_ERRORS:
            entry = error_in(self.query(_ERROR), _ERROR)
            if entry is None:
                break
            found.append(entry)
        return found

    def check(self) -> None:
        """Raises InstrumentError for the oldest error of the load, if there is one."""
        found = self.errors()
        if found:
            found[0].others = tuple(found[1:])
            raise found[0]

    # Channels.

    @property
    def channels(self) -> tuple[Channel, ...]:
        """All channels, as the panel lists them."""
        return tuple(
            Channel(self, _number_of(name), name) for name in self._automation["cmbChannel"].items
        )

    def channel(self, number: int) -> Channel:
        """The channel of that number. Raises LookupError where the load has none."""
        for channel in self.channels:
            if channel.number == number:
                return channel
        raise LookupError(f"the load has no channel {number}")

    def off(self) -> None:
        """Switches the load of every channel off. All are tried; the first failure is raised then."""
        first: errors.LoadError | None = None
        for channel in self.channels:
            try:
                channel.off()
            except errors.LoadError as failure:
                first = first or failure
        if first is not None:
            raise first

    # Time.

    def wait(self, seconds: float) -> None:
        """Lets time pass; other threads run, and Ctrl-C ends it."""
        self._host.run_for(seconds)

    def readings(
        self, period: float = 1.0, *, channels: Iterable[int] | None = None, count: int | None = None
    ) -> Iterator[Reading]:
        """Readings of the channels (all), one round every so many seconds; count rounds, or without
        end."""
        chosen = self._chosen(channels)
        due = self._host.time
        while count is None or count > 0:
            for channel in chosen:
                yield channel.read()
            if count is not None:
                count -= 1
                if count == 0:
                    return
            due = max(due + period, self._host.time)
            self.wait(due - self._host.time)

    def watch(
        self, period: float = 1.0, *, channels: Iterable[int] | None = None
    ) -> AsyncIterator[Reading]:
        """The same without end, on asyncio's loop, which goes on with other tasks meanwhile:

        async for reading in load.watch(0.2): ...
        """
        return self._in_background().watch(self, period, self._chosen(channels))

    def background(
        self,
        function: Callable[Parameters, Result],
        *arguments: Parameters.args,
        **named_arguments: Parameters.kwargs,
    ) -> Awaitable[Result]:
        """Runs a function that uses this load while asyncio's loop goes on with other tasks:

        await load.background(channel.on)
        """
        return self._in_background().run(function, *arguments, **named_arguments)

    def _chosen(self, numbers: Iterable[int] | None) -> tuple[Channel, ...]:
        if numbers is None:
            return self.channels
        return tuple(self.channel(number) for number in numbers)

    def _in_background(self) -> Worker:
        if self._worker is None:
            from .watching import Worker

            self._worker = Worker(self._host)
        return self._worker

    # The link.

    def reconnect(self) -> None:
        """Connects again to the same instrument, and to no other one. Raises NoInstrument."""
        if not self._automation.reconnect():
            raise errors.no_instrument(self._automation.failure())

    def close(self) -> None:
        """Ends the control and closes the link. The load stays as it is: what is on stays on."""
        if self._worker is not None:
            self._worker.end()
            self._worker = None
        self._automation.close()

    def __enter__(self) -> Load:
        return self

    def __exit__(self, *raised: object) -> None:
        self.close()

    async def __aenter__(self) -> Load:
        return self

    async def __aexit__(self, *raised: object) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<Load, {'connected' if self.connected else 'not connected'}>"


def _number_of(name: str) -> int:
    """Of "CH3-2040"."""
    digits = name.partition("-")[0].removeprefix("CH")
    return int(digits) if digits.isdigit() else 0


_LINKS: Mapping[str, str | None] = {"visa": None, "visa-com": "optVisa2", "serial": "optConnRS232"}


def _made(address: str, host: Host | None, simulate: bool, virtual_time: bool, wait_unit: int) -> Load:
    if host is None:
        host = (
            simulated_host(virtual_time=virtual_time, information_box=_nothing)
            if simulate or virtual_time
            else system_host(information_box=_nothing)
        )
    if not host.in_turn:
        raise ValueError("a Load is made on a host whose exchanges are in turn")
    zan = ZANCtrl(host)
    zan.waitUnit = wait_unit
    option = _LINKS.get(address.lower())
    if option is not None:
        zan[option].click()
    return Load(zan)


def _open(load: Load, address: str) -> None:
    zan = load.automation
    searches = not address or address.lower() in _LINKS
    if not (zan.AutoConnect() if searches else zan.connectTo(address)):
        raise errors.no_instrument(zan.failure())
    # What others left behind in the queue is not to be taken for an answer to the first command.
    load.errors()


def connect(
    address: str = "visa",
    *,
    host: Host | None = None,
    simulate: bool = False,
    virtual_time: bool = False,
    wait_unit: int = 200,
) -> Load:
    """Connects to a load.

    address: "visa" searches all that VISA finds, "serial" the serial ports, "visa-com" over the
        VISA COM objects; or that of one instrument: a VISA resource
        ("TCPIP0::192.168.1.7::5025::SOCKET", "USB0::..."), "COM3", a serial device
        ("/dev/ttyUSB0"), or a serial number
    host: one that was made by system_host() or simulated_host(), with all their options
    simulate: a simulated load instead of a real one
    virtual_time: the simulated load's clock jumps instead of waiting
    wait_unit: milliseconds; an answer is waited for seven of them, and one passes behind a command

    Raises NoInstrument, which says why there is none.
    """
    load = _made(address, host, simulate, virtual_time, wait_unit)
    try:
        _open(load, address)
    except BaseException:
        load.close()
        raise
    return load


async def connect_async(
    address: str = "visa",
    *,
    host: Host | None = None,
    simulate: bool = False,
    virtual_time: bool = False,
    wait_unit: int = 200,
) -> Load:
    """As connect(), while asyncio's loop goes on with other tasks."""
    load = _made(address, host, simulate, virtual_time, wait_unit)
    try:
        await load.background(_open, load, address)
    except BaseException:
        load.close()
        raise
    return load
