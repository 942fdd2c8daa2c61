"""Loads on asyncio's loop."""

from __future__ import annotations

import asyncio
import threading
from collections.abc import AsyncIterator, Callable
from concurrent.futures import ThreadPoolExecutor
from typing import TYPE_CHECKING, Any, TypeVar

from .errors import BrokenOff

if TYPE_CHECKING:
    from ._lumodevice import Host
    from .channel import Channel
    from .load import Load
    from .reading import Reading

__all__ = ["Worker"]

Result = TypeVar("Result")


class Worker:
    """A thread that uses a load for a task that waits, so that asyncio's loop does not stand still.

    It is at the load for one function at a time; whoever uses the load directly meanwhile, on its
    own thread, waits until that is over.
    """

    def __init__(self, host: Host) -> None:
        self._host = host
        self._thread: int | None = None
        self._threads = ThreadPoolExecutor(1, "lumodevice", self._begin)

    def _begin(self) -> None:
        self._thread = threading.get_ident()
        self._host._admit(self._thread)

    async def run(self, function: Callable[..., Result], *arguments: Any, **named: Any) -> Result:
        """Runs the function on the thread. Cancelled, it breaks off what the function waits for."""
        future = self._threads.submit(function, *arguments, **named)
        waited = asyncio.wrap_future(future)
        try:
            return await asyncio.shield(waited)
        except asyncio.CancelledError:
            self._host._break_off(True)
            try:
                await waited
            except (BrokenOff, asyncio.CancelledError):
                pass
            finally:
                self._host._break_off(False)
            raise

    async def watch(
        self, load: Load, period: float, channels: tuple[Channel, ...]
    ) -> AsyncIterator[Reading]:
        """See Load.watch."""
        host = self._host
        due = host.time
        while True:
            for channel in channels:
                yield await self.run(channel.read)
            due = max(due + period, host.time)
            if host.virtual_time:
                await self.run(host.run_for, due - host.time)
            else:
                await asyncio.sleep(due - host.time)

    def end(self) -> None:
        """What it is at is broken off."""
        self._host._break_off(True)
        self._threads.shutdown(cancel_futures=True)
        self._host._break_off(False)
        # Threads that come later may have the same number.
        if self._thread is not None:
            self._host._dismiss(self._thread)
