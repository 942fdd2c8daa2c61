#!/usr/bin/env python3
"""Sweeps the load line of a supply: the voltage at rising currents, and the resistance behind it.

    load_line.py USB0::0x0A1B::0xC0DE::A1::INSTR --channel 2 --to 10 --steps 11
    load_line.py --simulate
"""

import argparse

import lumodevice
from lumodevice import Mode


def sweep(load, channel, currents, settling):
    """The readings at each current. Whatever happens, the load goes off."""
    channel.mode = Mode.CC_HIGH
    settings = channel.setpoints
    least, greatest = settings.range("A")
    settings["A"] = least
    readings = []
    with channel.loaded():
        for amperes in currents:
            settings["A"] = min(max(amperes, least), greatest)
            load.wait(settling)
            readings.append(channel.read())
    return readings


def slope(points):
    """Of the straight line through the points, by least squares."""
    xs, ys = zip(*points)
    x, y = sum(xs) / len(xs), sum(ys) / len(ys)
    return sum((a - x) * (b - y) for a, b in points) / sum((a - x) ** 2 for a in xs)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("address", nargs="?", default="visa")
    parser.add_argument("--simulate", action="store_true")
    parser.add_argument("--channel", type=int, default=2)
    parser.add_argument("--to", type=float, default=5.0, metavar="AMPERES")
    parser.add_argument("--steps", type=int, default=11)
    parser.add_argument("--settling", type=float, default=0.2, metavar="SECONDS")
    chosen = parser.parse_args()

    with lumodevice.connect(chosen.address, virtual_time=chosen.simulate) as load:
        currents = [chosen.to * step / (chosen.steps - 1) for step in range(chosen.steps)]
        readings = sweep(load, load.channel(chosen.channel), currents, chosen.settling)
    print("  A        V        W")
    for reading in readings:
        print(f"{reading.current:7.3f}  {reading.voltage:7.3f}  {reading.power:7.2f}")
    ohms = -slope([(reading.current, reading.voltage) for reading in readings])
    print(f"the supply has {ohms * 1000:.1f} milliohms behind it")


if __name__ == "__main__":
    main()
