"""Loads on asyncio's loop."""

import asyncio
import sys
import time

import lumodevice
import pytest


def test_readings_come_on_asyncio_s_loop(load):
    async def run():
        readings = []
        async for reading in load.watch(0.2, channels=[1, 2]):
            readings.append(reading)
            if len(readings) == 10:
                break
        return readings

    readings = asyncio.run(run())
    assert [reading.channel for reading in readings] == [1, 2] * 5
    assert all((reading.voltage > 12) == (reading.channel == 1) for reading in readings)


def silent(**options):
    host = lumodevice.simulated_host(latencies=[":FETC:VOLT?=800"], **options)
    return lumodevice.connect("SIM00001", host=host, wait_unit=20)


def test_the_loop_goes_on_during_a_wait():
    async def run():
        ticks = 0

        async def tick():
            nonlocal ticks
            while True:
                await asyncio.sleep(0.01)
                ticks += 1

        async with await lumodevice.connect_async("SIM00001", simulate=True) as load:
            ticking = asyncio.create_task(tick())
            with pytest.raises(lumodevice.NoAnswer):
                await load.background(load.query, ":NO:SUCH:QUERY?")
            ticking.cancel()
        return ticks

    assert asyncio.run(run()) > 10


def test_a_use_on_the_own_thread_waits_for_the_reading_that_is_under_way():
    async def run():
        load = silent()
        channel = load.channel(1)
        reading = asyncio.create_task(load.background(lambda: channel.current))
        await asyncio.sleep(0)
        assert channel.current >= 0
        assert await reading >= 0
        load.close()

    asyncio.run(run())


def test_no_answer_is_that_of_the_other_thread():
    """Numbered readings tell what was asked: voltages from 10, currents from 20."""
    host = lumodevice.simulated_host(virtual_time=True, numbered_readings=True)

    async def run(load):
        channel, other = load.channel(1), load.channel(2)
        wrong = []

        def in_background():
            for _ in range(150):
                if not 10 < channel.voltage < 20:
                    wrong.append("voltage")
                if load.query(":CHAN?") not in "12":
                    wrong.append("channel")

        waiting = asyncio.ensure_future(load.background(in_background))
        while not waiting.done():
            if not 20 < other.current < 30:
                wrong.append("current")
            await asyncio.sleep(0)
        await waiting
        return wrong

    interval = sys.getswitchinterval()
    sys.setswitchinterval(1e-6)
    try:
        with lumodevice.connect(host=host) as load:
            assert asyncio.run(run(load)) == []
    finally:
        sys.setswitchinterval(interval)


def test_a_cancelled_wait_ends_at_once():
    async def run():
        load = await lumodevice.connect_async("SIM00001", simulate=True)
        waiting = asyncio.create_task(load.background(load.wait, 60))
        await asyncio.sleep(0.2)
        begin = time.monotonic()
        waiting.cancel()
        with pytest.raises(asyncio.CancelledError):
            await waiting
        assert time.monotonic() - begin < 10
        assert await load.background(load.query, ":MODE?") == "CCH"
        load.close()

    asyncio.run(run())


def test_two_benches_at_once():
    async def readings(volts):
        host = lumodevice.simulated_host(sources=[f"1={volts},0.1"], virtual_time=True)
        async with await lumodevice.connect_async(host=host) as load:
            seen = []
            async for reading in load.watch(0.2, channels=[1]):
                seen.append(reading.voltage)
                if len(seen) == 20:
                    return seen

    async def run():
        return await asyncio.gather(readings(9), readings(5))

    nine, five = asyncio.run(run())
    assert all(voltage == pytest.approx(9, abs=0.1) for voltage in nine)
    assert all(voltage == pytest.approx(5, abs=0.1) for voltage in five)


def test_what_fails_in_the_background_is_raised_where_it_is_awaited(load):
    async def run():
        with pytest.raises(lumodevice.InstrumentError):
            await load.background(load.write, ":NO:SUCH:COMMAND")

    asyncio.run(run())


def test_a_connect_that_fails_raises(tmp_path):
    async def run():
        with pytest.raises(lumodevice.NoInstrument):
            await lumodevice.connect_async("COM9", virtual_time=True)

    asyncio.run(run())
