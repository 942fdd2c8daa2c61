#!/usr/bin/env python3
"""Watches two loads at once on asyncio's loop, and switches both off when one battery is low.

    two_benches.py TCPIP0::192.168.1.7::5025::SOCKET TCPIP0::192.168.1.8::5025::SOCKET
    two_benches.py --simulate
"""

import argparse
import asyncio

import lumodevice
from lumodevice import Mode


async def watch(name, load, channel, until, low):
    """Prints a reading every five seconds until one of the batteries is low."""
    async for reading in load.watch(5, channels=[channel.number]):
        print(f"{name}: {reading.voltage:.2f} V {reading.current:.2f} A")
        if reading.voltage < until:
            print(f"{name} is low")
            low.set()
        if low.is_set():
            return


async def bench(name, address, host, amperes, until, low):
    async with await lumodevice.connect_async(address, host=host) as load:
        channel = load.channel(1)

        def begin():
            channel.mode = Mode.CC_HIGH
            channel.setpoints["A"] = amperes
            channel.on()

        await load.background(begin)
        try:
            await watch(name, load, channel, until, low)
        finally:
            await load.background(channel.off)


async def run(addresses, hosts, amperes, until):
    low = asyncio.Event()
    await asyncio.gather(
        *(
            bench(f"bench {number}", address, host, amperes, until, low)
            for number, (address, host) in enumerate(zip(addresses, hosts), 1)
        )
    )


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("addresses", nargs="*")
    parser.add_argument("--simulate", action="store_true")
    parser.add_argument("--amperes", type=float, default=2.0)
    parser.add_argument("--until", type=float, default=10.5, metavar="VOLTS")
    chosen = parser.parse_args()
    if chosen.simulate:
        hosts = [
            lumodevice.simulated_host(virtual_time=True, sources=[f"1=12.6,0.05,{capacity}"])
            for capacity in (0.1, 0.2)
        ]
        addresses = ["visa"] * 2
    else:
        addresses = chosen.addresses or parser.error("which loads?")
        hosts = [None] * len(addresses)
    asyncio.run(run(addresses, hosts, chosen.amperes, chosen.until))


if __name__ == "__main__":
    main()
